// Calls a function out of the main thread's run loop whenever a descriptor can be read. Costs nothing while
// it cannot.
#pragma once

#include <functional>

namespace kr::platform {

class RunLoopSource {
 public:
  // The descriptor stays the caller's and has to outlive the source. It is told again and again until it was
  // read. Main thread.
  RunLoopSource(int descriptor, std::function<void()> ready);
  // Main thread; also in the middle of the function.
  ~RunLoopSource();
  RunLoopSource(const RunLoopSource&) = delete;
  RunLoopSource& operator=(const RunLoopSource&) = delete;

 private:
  void* watcher_;  // an Objective-C object
};

}  // namespace kr::platform
