#include "library/process/SignatureText.h"

#include <array>
#include <cstdio>

#include "platform/FourCharacterCode.h"

namespace kr {

std::uint32_t signatureFromText(std::string_view text) {
  return codeFromText(text).value_or(0);
}

std::string textFromSignature(std::uint32_t signature) {
  return textFromCode(signature);
}

std::string hexTextFromSignature(std::uint32_t signature) {
  const auto widened = [&](unsigned shift) {
    return static_cast<unsigned>(
        static_cast<std::int32_t>(static_cast<std::int8_t>(signature >> shift & 0xFFU)));
  };
  std::array<char, 33> text{};
  std::snprintf(text.data(), text.size(), "%02X%02X%02X%02X", widened(24), widened(16), widened(8),
                widened(0));
  return text.data();
}

}  // namespace kr
