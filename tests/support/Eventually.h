// Waiting for something that another process or thread does.
//
//   EXPECT_TRUE(eventually([&] { return window.isInFront(); }));
#pragma once

#include <chrono>
#include <thread>

namespace kr::testing {

// Whether the condition holds within so many seconds. It is asked every five milliseconds.
template <class Condition>
[[nodiscard]] bool eventually(Condition condition, double seconds = 5.0) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

}  // namespace kr::testing
