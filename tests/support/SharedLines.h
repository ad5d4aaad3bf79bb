// A log that outlives the process that writes it: kept in memory that a test shares with its forked
// processes. Writing takes no system call.
#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Log.h"

namespace kr::testing {

class SharedLines final : public platform::LogSink {
 public:
  SharedLines();
  ~SharedLines() override;
  SharedLines(const SharedLines&) = delete;
  SharedLines& operator=(const SharedLines&) = delete;

  void line(std::string_view text) noexcept override;

  // Every line since the last clear(), oldest first; those of children that have ended as well.
  [[nodiscard]] std::vector<std::string> lines() const;
  void clear() noexcept;

 private:
  struct Page;

  std::mutex mutex_;
  Page* page_;
};

}  // namespace kr::testing
