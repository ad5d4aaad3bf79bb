// Character sets that texts come in, by the names of the IANA registry. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kr::platform {

// The name that a character set is known by first, for any of its names and in any case; none for a set that
// the system does not know.
[[nodiscard]] std::optional<std::string> characterSetNamed(std::string_view name);

// The text that the bytes stand for in a character set of that name; none where a byte stands for nothing,
// the bytes end within a character, or the set is not known.
[[nodiscard]] std::optional<std::u16string> decodedFrom(std::string_view name, std::string_view bytes);

}  // namespace kr::platform
