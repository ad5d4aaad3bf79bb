#include "platform/FourCharacterCode.h"

#include <algorithm>

#include "platform/MacRoman.h"
#include "platform/UTF8Bytes.h"

namespace kr {
namespace {

constexpr std::size_t kLength = 4;
constexpr unsigned kFirstBeyondASCII = 0x80;

std::optional<std::uint32_t> byteFor(char16_t character) {
  if (character < kFirstBeyondASCII) return character;
  const auto* found = std::find(kMacRomanUpperHalf.begin(), kMacRomanUpperHalf.end(), character);
  if (found == kMacRomanUpperHalf.end()) return std::nullopt;
  return kFirstBeyondASCII + static_cast<std::uint32_t>(found - kMacRomanUpperHalf.begin());
}

}  // namespace

std::optional<std::uint32_t> codeFromText(std::string_view text) {
  const std::u16string characters = platform::utf16FromBytes(text);
  if (characters.size() < kLength) return std::nullopt;
  std::uint32_t code = 0;
  for (std::size_t index = 0; index < kLength; ++index) {
    const std::optional<std::uint32_t> byte = byteFor(characters[index]);
    if (!byte) return std::nullopt;
    code = code << 8U | *byte;
  }
  return code;
}

std::string textFromCode(std::uint32_t code) {
  std::u16string characters;
  for (const unsigned shift : {24U, 16U, 8U, 0U}) {
    characters += macRomanCharacter(static_cast<std::uint8_t>(code >> shift));
  }
  return platform::bytesFromUTF16(characters);
}

}  // namespace kr
