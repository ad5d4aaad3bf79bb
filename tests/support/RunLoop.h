// Lets the main thread's run loop work while a test waits. Objective-C++ only.
//
//   EXPECT_TRUE(eventuallyInRunLoop([&] { return observer.count() == 1; }));
#pragma once

#import <Foundation/Foundation.h>

#include <chrono>

namespace kr::testing {

// Runs the loop in its default mode until nothing is left to do, and for this time at least.
inline void runLoop(double seconds = 0.02) {
  @autoreleasepool {
    NSDate* end = [NSDate dateWithTimeIntervalSinceNow:seconds];
    do {
      [[NSRunLoop mainRunLoop] runMode:NSDefaultRunLoopMode beforeDate:end];
    } while ([end timeIntervalSinceNow] > 0);
  }
}

// Whether the condition holds within so many seconds of the run loop.
template <class Condition>
[[nodiscard]] bool eventuallyInRunLoop(Condition condition, double seconds = 5.0) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) return false;
    runLoop(0.01);
  }
  return true;
}

}  // namespace kr::testing
