// The bytes of one file.
#pragma once

#include <sys/stat.h>

#include <atomic>
#include <vector>

#include "platform/linux/copy/Problem.h"

namespace kr::platform::copy {

// Whether files of this tree can be copied by sharing their blocks. True until a file system has refused it
// in a way that will be the same for every file. Any thread.
using CloneSupport = std::atomic<bool>;

// A buffer that is neither a burden nor felt in the number of calls.
inline constexpr std::size_t kBufferSize = 256UL << 10;
using Buffer = std::vector<char>;

// Copies all bytes of an open file into a new, empty one; both stand at their start. Blocks are shared where
// the file system can, holes stay holes. `status` is that of the source; a source that turns out shorter or
// longer than it says is a failure (ESTALE), because the copy would be a mixture of two states. `buffer` has
// kBufferSize bytes.
[[nodiscard]] Outcome copyContents(int source, const struct stat& status, int destination,
                                   CloneSupport& cloning, Buffer& buffer);

}  // namespace kr::platform::copy
