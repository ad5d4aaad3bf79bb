// Text from right to left: the toolkit places one character after the other from the left to the right, each
// in the form that it has alone. Any thread.
#pragma once

#include <string>
#include <string_view>

namespace kr {

// Whether the text holds characters that are written from right to left.
[[nodiscard]] bool hasRightToLeft(std::u16string_view text);

// One line of text in the order in which its characters stand from left to right, with Arabic letters in the
// forms in which they join. `rightToLeft` is the direction of the line as a whole. A text that ICU does not
// take is answered as it is.
[[nodiscard]] std::u16string visualLine(std::u16string_view line, bool rightToLeft);

}  // namespace kr
