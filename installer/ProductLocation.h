// Where the product lies that an installer started by the user belongs to, and what it is called. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kr {

// Path of the application bundle that the installer's bundle lies in, at whatever depth; none when there is
// no such bundle. Logs every shortening of the path.
[[nodiscard]] std::optional<std::string> enclosingApplication(std::string_view installerPath);

// The bundle's name without its extension; none when there is no name in the path.
[[nodiscard]] std::optional<std::string> productNameFromPath(std::string_view sourcePath);

}  // namespace kr
