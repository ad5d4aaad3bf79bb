// What tests know of single system calls: names for messages, and what may happen to them.
#pragma once

#include <optional>
#include <string>

namespace kr::testing {

[[nodiscard]] std::string systemCallName(long number);

// Which argument is the path that the call works on; none where it takes a descriptor.
[[nodiscard]] std::optional<std::size_t> pathArgument(long number);

// Which argument says how much a call is to move that may move less.
[[nodiscard]] std::optional<std::size_t> sizeArgument(long number);

// Whether the kernel may answer EINTR to it for files on a disk, so that the caller has to go on.
[[nodiscard]] bool mayBeInterrupted(long number);

// Whether it only waits for the disk.
[[nodiscard]] bool waitsForDisk(long number);

}  // namespace kr::testing
