// Tells from a path which application bundle an executable belongs to. Text only.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kr::platform {

// The innermost folder named "….app" that the path lies in: "/a/Foo.app/Contents/MacOS/Foo" -> "/a/Foo.app";
// none when there is none.
[[nodiscard]] std::optional<std::string> innermostBundle(std::string_view executablePath);

}  // namespace kr::platform
