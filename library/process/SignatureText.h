// Application signatures as text. Texts are UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kr {

// The four-character code of the text's first four characters; 0 when it has fewer or one of them cannot be
// part of a code.
[[nodiscard]] std::uint32_t signatureFromText(std::string_view text);

// The four characters of the code.
[[nodiscard]] std::string textFromSignature(std::uint32_t signature);

// The four bytes in hexadecimal, the highest first. A byte from 0x80 up is taken as negative and so prints as
// eight digits: 0x41FF4243 -> "41FFFFFFFF4243".
[[nodiscard]] std::string hexTextFromSignature(std::uint32_t signature);

}  // namespace kr
