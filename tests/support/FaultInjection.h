// Lets the n-th system call of a part of a test go wrong, so that a loop over n shows what it does when
// anything at all goes wrong:
//
//   for (std::size_t at = 1;; ++at) {
//     const FaultRun run = runWithFault(work, at, Fault::error(EIO));
//     if (run.hits == 0) break;  // there are fewer calls than that
//     ...
//   }
#pragma once

#include <functional>
#include <string>

#include "tests/support/Tracer.h"

namespace kr::testing {

struct Fault {
  enum class Kind { error, cutShort, kill };

  Kind kind;
  int number = 0;  // errno

  // The call fails. A process or thread that cannot be started fails with EAGAIN whatever the errno.
  static Fault error(int number) { return {Kind::error, number}; }
  // The call moves half of what it should. Only calls that may do so count.
  static Fault cutShort() { return {Kind::cutShort}; }
  // The process is killed before the call.
  static Fault kill() { return {Kind::kill}; }

  [[nodiscard]] std::string text() const;
};

enum class Threads { any, one };

struct FaultRun {
  Traced traced;
  std::size_t hits;          // how often the fault has struck: once or not at all
  long number;               // of the call that it struck
  std::string call;          // with its path
  std::size_t countedCalls;  // that the fault could have struck
};

// Runs `work` in a process of its own, of whose calls the n-th, from 1, goes wrong. Calls that only wait for
// the disk succeed without waiting: nobody in here can tell. With Threads::one no thread can be started.
[[nodiscard]] FaultRun runWithFault(const std::function<int()>& work, std::size_t at, const Fault& fault,
                                    Threads threads = Threads::any);

}  // namespace kr::testing
