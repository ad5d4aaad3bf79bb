// Asking again and again until something has happened. Blocks; any thread.
#pragma once

#include <concepts>

#include "platform/Clock.h"
#include "platform/Services.h"

namespace kr {

// Asks once in a millisecond, 500 times at most, whether it has happened; answers how often it had not.
template <std::predicate Happened>
[[nodiscard]] int pollsUntil(Happened happened) {
  constexpr int kMostPolls = 500;
  constexpr double kInterval = 0.001;
  int polls = 0;
  while (polls < kMostPolls && !happened()) {
    platform::services().clock->sleep(kInterval);
    ++polls;
  }
  return polls;
}

}  // namespace kr
