// Percent escapes of URLs: "%C3%A9" for the UTF-8 bytes of a character. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kr {

// The text with its escapes undone. None when a "%" is not followed by two hexadecimal digits, or the bytes
// of a run of escapes are not UTF-8.
[[nodiscard]] std::optional<std::u16string> withPercentEscapesExpanded(std::u16string_view text);

// The text with an escape in place of every character that may not stand in a URL, "%", "#" and brackets
// among them; reserved characters such as "/" and "?" stay. None when the text has a lone surrogate.
[[nodiscard]] std::optional<std::u16string> withPercentEscapesAdded(std::u16string_view text);

// The text as a URL: escapes that are there are undone first, so that nothing is escaped twice; "#" stays as
// it is. None when a step fails.
[[nodiscard]] std::optional<std::u16string> withPercentEscapes(std::u16string_view text);

}  // namespace kr
