// Bytes as text, in the encodings whose rules are simple enough to stand here. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "library/text/ByteOrderMark.h"

namespace kr {

// Every byte is the character of its own number.
[[nodiscard]] std::u16string decodedLatin1(std::string_view bytes);

[[nodiscard]] std::u16string decodedMacRoman(std::string_view bytes);

// With a mark or without one, and then the high byte first. Lone surrogates are units like all others; a last
// byte without a second one is left out.
[[nodiscard]] std::u16string decodedUTF16(std::string_view bytes);

// Bytes without a mark. None where they are not valid UTF-8 or UTF-32; UTF-16 is read as above.
[[nodiscard]] std::optional<std::u16string> decodedUnicode(UnicodeForm form, std::string_view bytes);

}  // namespace kr
