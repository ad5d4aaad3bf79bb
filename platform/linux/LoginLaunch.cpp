#include "platform/linux/LoginLaunch.h"

#include <algorithm>
#include <array>

namespace kr::platform {
namespace {

// LXQt's is left out: it becomes the parent of every program whose own parent has ended.
constexpr std::array<std::string_view, 9> kSessionManagers{"cinnamon-session",
                                                           "cinnamon-session-binary",
                                                           "gnome-session-binary",
                                                           "gnome-session-service",
                                                           "ksmserver",
                                                           "lxsession",
                                                           "mate-session",
                                                           "plasma_session",
                                                           "xfce4-session"};
constexpr std::array<std::string_view, 7> kShells{"ash", "bash", "busybox", "dash", "ksh", "sh", "zsh"};

template <std::size_t Count>
bool contains(const std::array<std::string_view, Count>& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

std::optional<std::string_view> autostartUnit(std::string_view controlGroups) {
  while (!controlGroups.empty()) {
    const std::size_t end = std::min(controlGroups.find_first_of("/\n"), controlGroups.size());
    const std::string_view name = controlGroups.substr(0, end);
    if (name.starts_with("app-") && name.ends_with("@autostart.service")) return name;
    controlGroups.remove_prefix(std::min(end + 1, controlGroups.size()));
  }
  return std::nullopt;
}

bool startsLoginItems(std::string_view programName) {
  return contains(kSessionManagers, programName);
}

bool isShell(std::string_view programName) {
  return contains(kShells, programName);
}

}  // namespace kr::platform
