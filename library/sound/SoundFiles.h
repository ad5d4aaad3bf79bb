// Sound files: which files are sounds, where the system keeps its own, and which file a sound's name stands
// for. Paths are file-system bytes. Any thread.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kr {

// Every extension of a sound file. Case counts. The entries in quotes are file types of four characters, as
// they are written where a file has a type and no extension.
[[nodiscard]] std::span<const std::string_view> soundFileExtensions();

[[nodiscard]] bool isSoundFile(std::string_view path);

// The paths that are those of sound files, in their order.
[[nodiscard]] std::vector<std::string> soundFiles(const std::vector<std::string>& paths);

// The folders in which the system keeps sounds: its own, the machine's, the user's.
[[nodiscard]] std::vector<std::string> systemSoundFolders(std::string_view home);

// Paths of the sound files right in the folders, folder by folder, each in the order in which it is listed.
// What is no folder that can be listed is passed over.
[[nodiscard]] std::vector<std::string> soundFilesInFolders(const std::vector<std::string>& folders);

// The name that a sound file's sound has: "/x/Glass.aiff" -> "Glass".
[[nodiscard]] std::string soundName(std::string_view path);

// The first of the paths that has the name; none when none has.
[[nodiscard]] std::optional<std::string> fileOfSound(std::string_view name,
                                                     const std::vector<std::string>& paths);

}  // namespace kr
