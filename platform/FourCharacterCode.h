// Four-character codes: application signatures, event classes and IDs. A code's four bytes, the highest
// first, are characters of the Mac Roman character set.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kr {

// The code of an application that has no signature of its own, '????'.
inline constexpr std::uint32_t kNoSignature = 0x3F3F3F3F;

// Whether the code names an application: 0 and '????' stand for those without a signature.
[[nodiscard]] constexpr bool isSignature(std::uint32_t code) {
  return code != 0 && code != kNoSignature;
}

// The code that the first four characters of a UTF-8 text stand for; none when it has fewer, or when one of
// them is not in the character set.
[[nodiscard]] std::optional<std::uint32_t> codeFromText(std::string_view text);

// The four characters of a code, UTF-8.
[[nodiscard]] std::string textFromCode(std::uint32_t code);

}  // namespace kr
