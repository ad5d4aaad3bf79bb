// What the machine's list of users says. Any thread.
#pragma once

#include <optional>
#include <string>

namespace kr::posix {

// The home folder of the user with this name; none for nobody.
[[nodiscard]] std::optional<std::string> homeOf(const std::string& user);

// The name of the user who runs the program; none where the list does not have it.
[[nodiscard]] std::optional<std::string> ownUserName();

}  // namespace kr::posix
