// The course of an animation. Any thread.
#pragma once

#include <algorithm>

namespace kr::platform {

// How much of the way is done when `part` of the time is over: none at the beginning and all at the end, also
// before and after them, slow at both and fast in between.
[[nodiscard]] constexpr double easedProgress(double part) noexcept {
  const double time = std::clamp(part, 0.0, 1.0);
  return time * time * (3 - 2 * time);
}

}  // namespace kr::platform
