// Keeps log lines for a test to look at.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "platform/Log.h"

namespace kr::platform::testing {

class RecordingLog final : public LogSink {
 public:
  void line(std::string_view text) noexcept override;

  // Every line so far, oldest first.
  [[nodiscard]] std::vector<std::string> lines() const;

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

}  // namespace kr::platform::testing
