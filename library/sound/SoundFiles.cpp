#include "library/sound/SoundFiles.h"

#include <algorithm>
#include <array>

#include "platform/Paths.h"
#include "platform/posix/Files.h"

namespace kr {
namespace {

constexpr std::array<std::string_view, 23> kExtensions{
    "aiff", "AIFF", "'AIFF'", "aif",    "AIF", "aifc", "AIFC",   "wav", "WAV", "'WAVE'", "snd", "SND",
    "au",   "AU",   "'ULAW'", "'ALAW'", "mp3", "MP3",  "'Mp3 '", "ulw", "ULW", "m4p",    "m4a"};

constexpr std::array<std::string_view, 3> kSystemFolders{"/System/Library/Sounds", "/Library/Sounds",
                                                         "~/Library/Sounds"};

}  // namespace

std::span<const std::string_view> soundFileExtensions() {
  return kExtensions;
}

bool isSoundFile(std::string_view path) {
  return std::find(kExtensions.begin(), kExtensions.end(), paths::extension(path)) != kExtensions.end();
}

std::vector<std::string> soundFiles(const std::vector<std::string>& paths) {
  std::vector<std::string> sounds;
  std::copy_if(paths.begin(), paths.end(), std::back_inserter(sounds), isSoundFile);
  return sounds;
}

std::vector<std::string> systemSoundFolders(std::string_view home) {
  std::vector<std::string> folders;
  folders.reserve(kSystemFolders.size());
  for (const std::string_view folder : kSystemFolders) folders.push_back(paths::expandingTilde(folder, home));
  return folders;
}

std::vector<std::string> soundFilesInFolders(const std::vector<std::string>& folders) {
  std::vector<std::string> sounds;
  for (const std::string& folder : folders) {
    for (const std::string& name : files::entries(folder).value_or(std::vector<std::string>{})) {
      if (isSoundFile(name)) sounds.push_back(paths::joined(folder, name));
    }
  }
  return sounds;
}

std::string soundName(std::string_view path) {
  return std::string(paths::withoutExtension(paths::lastComponent(path)));
}

std::optional<std::string> fileOfSound(std::string_view name, const std::vector<std::string>& paths) {
  const auto found = std::find_if(paths.begin(), paths.end(),
                                  [name](const std::string& path) { return soundName(path) == name; });
  if (found == paths.end()) return std::nullopt;
  return *found;
}

}  // namespace kr
