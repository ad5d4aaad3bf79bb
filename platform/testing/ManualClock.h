// A clock that stands still but for what is slept on it, so a test of a schedule takes no time.
#pragma once

#include <functional>
#include <vector>

#include "platform/Clock.h"

namespace kr::platform::testing {

class ManualClock final : public Clock {
 public:
  double monotonicSeconds() const noexcept override { return now_; }
  double wallSeconds() const noexcept override { return wallStart_ + now_; }
  void sleep(double seconds) noexcept override {
    sleeps_.push_back(seconds);
    now_ += seconds;
    if (onSleep) onSleep(now_);
  }

  // Every sleep so far, in seconds.
  [[nodiscard]] const std::vector<double>& sleeps() const { return sleeps_; }

  // Called after each sleep with the seconds since the clock was made.
  std::function<void(double)> onSleep;

 private:
  double now_ = 0;
  double wallStart_ = 1'000'000'000;
  std::vector<double> sleeps_;
};

}  // namespace kr::platform::testing
