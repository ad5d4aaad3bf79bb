// The children of the test's own process. A test that asks has no others.
#pragma once

#include <sys/wait.h>

#include <cerrno>

namespace kr::testing {

// Whether there is none, also none that has ended and waits to be asked for its status.
[[nodiscard]] inline bool hasNoChildren() {
  siginfo_t end{};
  return ::waitid(P_ALL, 0, &end, WEXITED | WNOHANG | WNOWAIT) != 0 && errno == ECHILD;
}

}  // namespace kr::testing
