// White space at the ends of a text, and texts on one line. Any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kr {

// What the trimming operations of this library remove: units below 33 (control characters and the space) and
// the no-break space.
[[nodiscard]] constexpr bool isWhitespace(char16_t unit) {
  return unit < 33 || unit == 0xA0;
}

// How many units of white space the text begins and ends with.
[[nodiscard]] std::size_t leadingWhitespace(std::u16string_view text);
[[nodiscard]] std::size_t trailingWhitespace(std::u16string_view text);

// The part of the text between its white space, empty when there is nothing else. None when there is nothing
// to remove.
[[nodiscard]] std::optional<std::u16string_view> trimmed(std::u16string_view text);

// How many units the text begins and ends with that the system's own trimming removes: the Unicode spaces and
// line breaks, not every control character.
[[nodiscard]] std::size_t leadingSystemWhitespace(std::u16string_view text);
[[nodiscard]] std::size_t trailingSystemWhitespace(std::u16string_view text);

// The text with a space in place of every character of the control character set (line breaks, tabs, but also
// format characters such as U+200D), then trimmed as the system trims. None when that changes nothing.
[[nodiscard]] std::optional<std::u16string> asSingleLine(std::u16string_view text);

}  // namespace kr
