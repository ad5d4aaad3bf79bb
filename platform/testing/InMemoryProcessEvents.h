// Sends the events that a test wants.
#pragma once

#include <mutex>
#include <utility>
#include <vector>

#include "platform/ProcessEvents.h"

namespace kr::platform::testing {

class InMemoryProcessEvents final : public ProcessEvents {
 public:
  // Calls the handler as the system would. Nothing before start().
  void send(std::uint32_t kind) {
    if (handler_) handler_(kind);
  }

  [[nodiscard]] int starts() const { return starts_; }

  // Every process that the program has come across, oldest first.
  [[nodiscard]] std::vector<SerialNumber> learned() const {
    const std::lock_guard lock(mutex_);
    return learned_;
  }

  void start(Handler handler) override {
    ++starts_;
    handler_ = std::move(handler);
  }
  void learn(SerialNumber process) override {
    const std::lock_guard lock(mutex_);
    learned_.push_back(process);
  }

 private:
  Handler handler_;
  int starts_ = 0;
  mutable std::mutex mutex_;
  std::vector<SerialNumber> learned_;
};

}  // namespace kr::platform::testing
