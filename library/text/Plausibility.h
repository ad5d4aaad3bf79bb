// How likely it is that bytes were decoded in the right encoding. Any thread.
#pragma once

#include <string_view>

namespace kr {

// From the first 1000 units at most: letters, marks, numbers, tabs, line breaks and spaces are good, other
// units below 33 are bad, and a noncharacter or a code point without a character is ten times as bad. The
// score is what good exceeds bad by, divided by the number of units. That of an empty text is no number.
[[nodiscard]] float plausibility(std::u16string_view text);

}  // namespace kr
