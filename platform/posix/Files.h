// Questions about the disk that POSIX answers on every system. Paths are file-system bytes. Any thread;
// nothing raises.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kr::files {

// Whether something can be reached at the path. Links are followed, so a dangling link does not count.
[[nodiscard]] bool exists(const std::string& path) noexcept;

// Whether anything has this name. Links are not followed, so a dangling link counts.
[[nodiscard]] bool itemExists(const std::string& path) noexcept;

// Whether a folder can be reached at the path. Links are followed.
[[nodiscard]] bool isFolder(const std::string& path) noexcept;

// Whether the user may list the folder and reach what is in it.
[[nodiscard]] bool isReadableFolder(const std::string& path) noexcept;

// Names in a folder, without "." and "..", in the order in which the file system lists them; none when the
// folder cannot be listed.
[[nodiscard]] std::optional<std::vector<std::string>> entries(const std::string& folder);

// The same for an open folder, whatever its descriptor stands at.
[[nodiscard]] std::optional<std::vector<std::string>> entries(int folder);

// The bytes of a file of at most `limit` bytes; none when it cannot be read or is larger.
[[nodiscard]] std::optional<std::string> contents(const std::string& path, std::size_t limit = 64UL << 20);

// The first bytes of a file, at most `count`; none when it cannot be read.
[[nodiscard]] std::optional<std::string> firstBytes(const std::string& path, std::size_t count);

// Puts the bytes at the end of a file, which is created where there is none. False when it cannot be opened
// for writing, or not all could be written.
[[nodiscard]] bool append(const std::string& path, std::string_view bytes) noexcept;

// Creates the folder and every missing folder above it. False when it is not there afterwards.
bool makeFolders(const std::string& path) noexcept;

// The path without links, "." and ".."; none when it does not exist.
[[nodiscard]] std::optional<std::string> resolved(const std::string& path);

}  // namespace kr::files
