#include "platform/LoginItems.h"

#include <algorithm>

#include "platform/Paths.h"
#include "platform/SystemServices.h"
#include "platform/linux/BundlePath.h"
#include "platform/linux/GLibOwner.h"
#include "platform/posix/Files.h"

namespace kr::platform {
namespace {

constexpr std::string_view kEntrySuffix = ".desktop";
constexpr const char* kGroup = G_KEY_FILE_DESKTOP_GROUP;

std::vector<std::string> autostartFolders() {
  std::vector<std::string> folders{paths::joined(g_get_user_config_dir(), "autostart")};
  for (const char* const* folder = g_get_system_config_dirs(); *folder != nullptr; ++folder) {
    folders.push_back(paths::joined(*folder, "autostart"));
  }
  return folders;
}

// The program that the command line of a desktop entry starts; none when it cannot be found.
std::optional<std::string> program(const char* commandLine) {
  char** words = nullptr;
  if (!g_shell_parse_argv(commandLine, nullptr, &words, nullptr)) return std::nullopt;
  const glib::Strings owner(words);
  const glib::String path(g_find_program_in_path(words[0]));
  if (!path) return std::nullopt;
  return files::resolved(path.get());
}

// What an autostart entry starts: its application bundle, or its program where that is in none. None for an
// entry that is switched off or cannot be resolved.
std::optional<std::string> startedBy(const std::string& entryPath) {
  const glib::KeyFile entry(g_key_file_new());
  if (!g_key_file_load_from_file(entry.get(), entryPath.c_str(), G_KEY_FILE_NONE, nullptr))
    return std::nullopt;
  if (g_key_file_get_boolean(entry.get(), kGroup, G_KEY_FILE_DESKTOP_KEY_HIDDEN, nullptr))
    return std::nullopt;
  const glib::String command(
      g_key_file_get_string(entry.get(), kGroup, G_KEY_FILE_DESKTOP_KEY_EXEC, nullptr));
  const auto executable = command ? program(command.get()) : std::nullopt;
  if (!executable) return std::nullopt;
  return innermostBundle(*executable).value_or(*executable);
}

class AutostartEntries final : public LoginItems {
 public:
  std::optional<std::vector<std::string>> paths() override {
    std::vector<std::string> items;
    std::vector<std::string>
        seen;  // an entry of the user stands in place of the machine's entry of the same name
    for (const std::string& folder : autostartFolders()) {
      for (const std::string& name : files::entries(folder).value_or(std::vector<std::string>{})) {
        if (!name.ends_with(kEntrySuffix) || std::find(seen.begin(), seen.end(), name) != seen.end())
          continue;
        seen.push_back(name);
        if (auto path = startedBy(kr::paths::joined(folder, name))) items.push_back(std::move(*path));
      }
    }
    return items;
  }
};

}  // namespace

LoginItems& systemLoginItems() noexcept {
  static AutostartEntries& items = *new AutostartEntries;
  return items;
}

}  // namespace kr::platform
