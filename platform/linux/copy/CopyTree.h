// Copies a file, a link or a whole folder such that the destination is never half there: the copy is built
// under another name beside it, brought to the disk, and then renamed. Plain Linux calls, and no other part
// of this program: it also serves programs that have nothing but this.
#pragma once

#include <optional>
#include <string>

#include "platform/Failure.h"

namespace kr::platform::copy {

// Whether the copy is safe on the disk before it gets its name, or only in the memory of the system as what
// most programs write is. The first costs one writing out of the file system.
enum class Durability { onDisk, inCache };

// Copies the item at `source` to `destination`, at which there must be nothing and whose parent folder must
// exist. Kept are contents, holes, links as links, names of one file among each other, modes, times to the
// nanosecond, extended attributes with access lists, and owners where the process may give files away. What
// cannot be kept or copied (a FIFO, a socket, a device, an unreadable file, one that changes meanwhile) is a
// failure, and after a failure nothing is left. A destination inside the source is refused. No link inside
// the source is followed. Paths are file-system bytes. Any thread; blocks its caller until the copy is in
// place.
[[nodiscard]] std::optional<Failure> copyTree(const std::string& source, const std::string& destination,
                                              Durability durability = Durability::onDisk);

}  // namespace kr::platform::copy
