// Reads the version resource ('vers') of applications from before there were information dictionaries.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kr {

// The version that the resource's first four bytes stand for, such as "1.2", "1.2.3" or "1.2b4". The bytes
// are read from the fourth to the first: major (two decimal digits), minor and bug-fix (one digit each),
// stage, non-release number. None when there are fewer than four.
[[nodiscard]] std::optional<std::string> versionFromResource(std::string_view bytes);

}  // namespace kr
