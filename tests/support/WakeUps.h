// How often a process was woken, how many threads it has, and how much of the processor it has used.
#pragma once

#include <unistd.h>

#include <cstddef>

namespace kr::testing {

// Times that any of its threads has waited for something, since the process was started.
[[nodiscard]] long voluntarySwitches(pid_t pid = ::getpid());

[[nodiscard]] std::size_t threadCount(pid_t pid = ::getpid());

[[nodiscard]] double processorSeconds(pid_t pid = ::getpid());

}  // namespace kr::testing
