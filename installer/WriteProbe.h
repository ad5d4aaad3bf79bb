// Whether the user may write somewhere, asked before anything is written. Every failure is an answer of "no".
// Paths are file-system bytes. Any thread.
#pragma once

#include <string>

namespace kr {

// Whether the file can be opened for reading and writing. It is never created.
[[nodiscard]] bool canWriteToFile(const std::string& path) noexcept;

// Whether a file can be created in the folder. Tries it with a file of an unused name, which is gone
// afterwards.
[[nodiscard]] bool canWriteToDirectory(const std::string& path);

// Whether the permissions of the file or folder let the user write it; false when there is none.
[[nodiscard]] bool canWriteToFileOrDirectory(const std::string& path);

// Whether the destination can be written without further rights: the item that is there already, and the
// nearest folder above it that exists. Logs which of them cannot.
[[nodiscard]] bool canWriteToPath(const std::string& path);

}  // namespace kr
