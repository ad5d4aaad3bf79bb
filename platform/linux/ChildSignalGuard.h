// Leaves the end of the process's children to those who wait for them.
#pragma once

#include <signal.h>

namespace kr::platform {

// For its lifetime no handler hears of a child that ends, and none is reaped unasked. Foundation's handler
// waits for every child there is, on the main thread, whoever has started it; a program that was started with
// the signal ignored loses the status of all of them. One object at a time.
class ChildSignalGuard {
 public:
  ChildSignalGuard() noexcept;
  // What was heard before is heard again, the children that have ended meanwhile too.
  ~ChildSignalGuard();
  ChildSignalGuard(const ChildSignalGuard&) = delete;
  ChildSignalGuard& operator=(const ChildSignalGuard&) = delete;

 private:
  struct sigaction previous_ {};
};

}  // namespace kr::platform
