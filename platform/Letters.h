// Which characters are letters: those of every script, with the marks that go with them. Any thread.
#pragma once

#include <cstddef>
#include <string_view>

namespace kr::platform {

// Where a letter stands, in units of UTF-16; its length is 0 when there is none.
struct LetterRange {
  std::size_t location = 0;
  std::size_t length = 0;
};

// The first letter of the text. Half of a surrogate pair is none.
[[nodiscard]] LetterRange firstLetter(std::u16string_view text) noexcept;

}  // namespace kr::platform
