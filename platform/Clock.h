// Time as the schedules of this system need it: a steady clock to measure with, a wall clock for dates, and
// sleeping. Any thread.
#pragma once

namespace kr::platform {

class Clock {
 public:
  virtual ~Clock() = default;

  // Seconds on a clock that never goes back. Only differences mean something.
  [[nodiscard]] virtual double monotonicSeconds() const noexcept = 0;

  // Seconds since 1 January 1970 00:00 UTC.
  [[nodiscard]] virtual double wallSeconds() const noexcept = 0;

  // Blocks the calling thread for this many seconds.
  virtual void sleep(double seconds) noexcept = 0;
};

}  // namespace kr::platform
