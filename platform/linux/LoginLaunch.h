// Tells whether a program was started with the user's session. Text only.
#pragma once

#include <optional>
#include <string_view>

namespace kr::platform {

// The unit in which systemd runs an entry of the autostart folders, out of the text of /proc/PID/cgroup
// ("app-mail@autostart.service"); none for a process that is in no such unit. Valid as long as the text.
[[nodiscard]] std::optional<std::string_view> autostartUnit(std::string_view controlGroups);

// Whether the program of this name is a session manager that starts the entries of the autostart folders
// itself, and nothing after that.
[[nodiscard]] bool startsLoginItems(std::string_view programName);

// Whether the program of this name only starts what it was told to.
[[nodiscard]] bool isShell(std::string_view programName);

}  // namespace kr::platform
