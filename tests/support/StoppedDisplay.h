// An X server that answers nothing until the end of the scope. A question that waits for it all the same
// hangs for ten seconds only: then the server goes on, and the test can tell.
#pragma once

#include <signal.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "tests/support/Desktop.h"

namespace kr::testing {

class StoppedDisplay {
 public:
  explicit StoppedDisplay(const Desktop& desktop) : desktop_(desktop) { desktop_.signalDisplay(SIGSTOP); }
  ~StoppedDisplay() {
    {
      const std::lock_guard lock(mutex_);
      ended_ = true;
    }
    changed_.notify_one();
    rescue_.join();
    desktop_.signalDisplay(SIGCONT);
  }
  StoppedDisplay(const StoppedDisplay&) = delete;
  StoppedDisplay& operator=(const StoppedDisplay&) = delete;

  // Whether the server had to go on, because a question hung.
  [[nodiscard]] bool hadToGoOn() {
    const std::lock_guard lock(mutex_);
    return late_;
  }

 private:
  void rescue() {
    std::unique_lock lock(mutex_);
    if (changed_.wait_for(lock, std::chrono::seconds(10), [this] { return ended_; })) return;
    late_ = true;
    desktop_.signalDisplay(SIGCONT);
  }

  const Desktop& desktop_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool ended_ = false;
  bool late_ = false;
  std::thread rescue_{[this] { rescue(); }};
};

}  // namespace kr::testing
