// Texts matched against patterns in which "*" stands for any run of characters. Any thread.
#pragma once

#include <string_view>

namespace kr {

// Whether the whole text matches the pattern, with regard to case. A pattern without "*" matches itself only.
// Takes time that grows with the two lengths, however many stars there are.
[[nodiscard]] bool matchesWildcards(std::u16string_view text, std::u16string_view pattern);

}  // namespace kr
