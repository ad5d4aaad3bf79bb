// What the kernel and its tools say about the times of a process. Any thread, but see userTime().
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace kr::macos {

// Start of the process in seconds since 1970 UTC; 0.0 when the kernel does not say.
[[nodiscard]] double startTime(pid_t pid);

// User CPU time as the process listing writes it, "minutes:seconds" with spaces and a line end around it;
// none when it cannot be read. Runs a shell command that leaves its output in one file for all callers: two
// calls at once may read each other's answer.
[[nodiscard]] std::optional<std::string> userTime(pid_t pid);

}  // namespace kr::macos
