// Skin colours of emoji. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kr {

// The emoji with the skin colour, 1 (lightest, as 2) to 6 (darkest); any other number asks for none. A
// modifier that follows the first character is replaced or, where none is asked for, removed; else the
// modifier is put behind the first character, in place of a U+FE0F there. None when that changes nothing.
[[nodiscard]] std::optional<std::u16string> withSkinColor(std::u16string_view emoji, long color);

}  // namespace kr
