#include "library/sound/LastSound.h"

#include <atomic>
#include <cmath>
#include <limits>

namespace kr {
namespace {

constexpr double kAwakeFor = 25;  // seconds after a sound
constexpr double kNever = -std::numeric_limits<double>::infinity();

std::atomic<double> gLastSound = kNever;

}  // namespace

std::optional<double> lastSoundTime() {
  const double time = gLastSound;
  if (std::isinf(time)) return std::nullopt;
  return time;
}

void setLastSoundTime(double seconds) {
  gLastSound = seconds;
}

bool needsWaking(std::optional<double> lastSound, double now) {
  return !lastSound || now - *lastSound > kAwakeFor;
}

}  // namespace kr
