// The note that the Trash keeps beside each item: where it came from, and when. Without one no file manager
// can restore the item.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

#include "platform/Failure.h"

namespace kr::platform {

// Writes the note of an item that was at the path into an open, empty file. False with errno.
[[nodiscard]] bool writeTrashNote(int file, const std::string& path);

// GIO moves an item also where it could not write its note, as on a full disk. This makes up for it: writes
// the note that is missing, or else moves the item back and answers why. `item` is the status of what was at
// the path. Only for the Trash of the user's home disk.
[[nodiscard]] std::optional<Failure> completeTrashNote(const std::string& path, const struct stat& item);

}  // namespace kr::platform
