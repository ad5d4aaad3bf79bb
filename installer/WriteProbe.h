// Whether the user may write somewhere without further rights. The probes never fail: what cannot be answered
// is "no". Paths are file-system bytes. Any thread.
#pragma once

#include <string>

namespace kr {

// Opens the file for reading and writing, and closes it.
[[nodiscard]] bool canWriteToFile(const std::string& path);

// Creates a probe file in the folder and removes it.
[[nodiscard]] bool canWriteToDirectory(const std::string& path);

// What the system says of a file or folder that exists; false when it does not.
[[nodiscard]] bool canWriteToFileOrDirectory(const std::string& path);

// Whether an item could be put at the path: what exists there must be writable, and so must the nearest
// folder above it that exists. Logs what cannot be written.
[[nodiscard]] bool canWriteToPath(const std::string& path);

}  // namespace kr
