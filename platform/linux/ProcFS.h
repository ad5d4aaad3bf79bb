// What the kernel says about processes, out of /proc. Another process may end in the middle of any call,
// which reads as "none". Any thread.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/SerialNumber.h"

namespace kr::platform::procfs {

// Fields of /proc/PID/stat. Times are in ticks, of which there are ticksPerSecond().
struct Status {
  char state = 0;
  pid_t parent = 0;
  std::uint64_t userTicks = 0;
  std::uint64_t startTicks = 0;  // since the system was started

  // A zombie has ended, though its ID is not free yet.
  [[nodiscard]] bool hasEnded() const { return state == 'Z' || state == 'X' || state == 'x'; }
};

// Reads the text of a stat file. The program's name in it may hold blanks, parentheses and line breaks.
[[nodiscard]] std::optional<Status> parseStatus(std::string_view text);

[[nodiscard]] std::optional<Status> status(pid_t pid);

// Every process ID, in no order that means anything.
[[nodiscard]] std::vector<pid_t> processIDs();

// Path of the program that the process runs, without links. Of a program whose file was deleted, the path it
// had. None for kernel threads, for processes that have ended and for those of other users.
[[nodiscard]] std::optional<std::string> executable(pid_t pid);

[[nodiscard]] double ticksPerSecond();

// When the system was started, in seconds since 1970 UTC; none when the kernel does not say.
[[nodiscard]] std::optional<double> bootTime();

// The identity of a running process: the time of its start and its ID.
[[nodiscard]] SerialNumber serialNumber(pid_t pid, const Status& status);
[[nodiscard]] std::optional<SerialNumber> serialNumber(pid_t pid);

// The ID that a serial number was made of, whether or not that process still runs.
[[nodiscard]] pid_t processID(SerialNumber process);

// The process ID while that process runs.
[[nodiscard]] std::optional<pid_t> runningProcessID(SerialNumber process);

}  // namespace kr::platform::procfs
