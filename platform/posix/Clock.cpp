#include "platform/Clock.h"

#include <time.h>

#include <cerrno>
#include <cmath>

#include "platform/SystemServices.h"

namespace kr::platform {
namespace {

double seconds(clockid_t clock) {
  timespec now{};
  ::clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

class PosixClock final : public Clock {
 public:
  double monotonicSeconds() const noexcept override { return seconds(CLOCK_MONOTONIC); }
  double wallSeconds() const noexcept override { return seconds(CLOCK_REALTIME); }

  void sleep(double duration) noexcept override {
    if (!(duration > 0)) return;
    const double whole = std::floor(duration);
    timespec left{static_cast<time_t>(whole), static_cast<long>((duration - whole) * 1e9)};
    while (::nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
  }
};

}  // namespace

Clock& systemClock() noexcept {
  static PosixClock& clock = *new PosixClock;
  return clock;
}

}  // namespace kr::platform
