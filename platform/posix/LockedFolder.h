// Hidden folders for the work of one process: their names cannot be guessed, and a lock on the folder tells
// one that is in use from one that a killed process has left behind. Nothing raises but for want of memory.
#pragma once

#include <string>
#include <string_view>
#include <system_error>

#include "platform/posix/FileDescriptor.h"

namespace kr::posix {

// Makes a new, empty, locked folder in an open folder. Its owner alone may enter it, as far as the folder
// above passes nothing else on; its name is the prefix and sixteen random hexadecimal digits.
[[nodiscard]] std::error_code createLockedFolder(int parent, std::string_view prefix, std::string& name,
                                                 FileDescriptor& folder);

// Whether it could be the name of such a folder.
[[nodiscard]] bool isLockedFolderName(std::string_view prefix, std::string_view name);

// Opens the folder of that name, not through a link. None when there is no such folder, or when a living
// process holds its lock; else the lock is this process's until the descriptor is closed.
[[nodiscard]] FileDescriptor openAbandonedFolder(int parent, const std::string& name) noexcept;

}  // namespace kr::posix
