#include "library/text/Decoding.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "library/text/CodePoints.h"
#include "platform/MacRoman.h"
#include "platform/UTF8Bytes.h"

namespace kr {
namespace {

constexpr std::uint8_t byteAt(std::string_view bytes, std::size_t index) {
  return static_cast<std::uint8_t>(bytes[index]);
}

std::u16string utf16(std::string_view bytes, bool bigEndian) {
  const std::size_t high = bigEndian ? 0 : 1;
  std::u16string text(bytes.size() / 2, u'\0');
  for (std::size_t index = 0; index < text.size(); ++index) {
    text[index] =
        static_cast<char16_t>(byteAt(bytes, 2 * index + high) << 8U | byteAt(bytes, 2 * index + 1 - high));
  }
  return text;
}

std::optional<std::u16string> utf32(std::string_view bytes, bool bigEndian) {
  constexpr std::size_t kWidth = 4;
  if (bytes.size() % kWidth != 0) return std::nullopt;
  std::u16string text;
  text.reserve(bytes.size() / kWidth);
  for (std::size_t start = 0; start < bytes.size(); start += kWidth) {
    char32_t point = 0;
    for (std::size_t index = 0; index < kWidth; ++index) {
      point = point << 8U | byteAt(bytes, start + (bigEndian ? index : kWidth - 1 - index));
    }
    if (point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF)) return std::nullopt;
    appendCodePoint(text, point);
  }
  return text;
}

}  // namespace

std::u16string decodedLatin1(std::string_view bytes) {
  std::u16string text(bytes.size(), u'\0');
  for (std::size_t index = 0; index < bytes.size(); ++index) text[index] = byteAt(bytes, index);
  return text;
}

std::u16string decodedMacRoman(std::string_view bytes) {
  std::u16string text(bytes.size(), u'\0');
  for (std::size_t index = 0; index < bytes.size(); ++index)
    text[index] = macRomanCharacter(byteAt(bytes, index));
  return text;
}

std::u16string decodedUTF16(std::string_view bytes) {
  const bool isLittleEndian = bytes.starts_with("\xFF\xFE");
  if (isLittleEndian || bytes.starts_with("\xFE\xFF")) bytes.remove_prefix(2);
  return utf16(bytes, !isLittleEndian);
}

std::optional<std::u16string> decodedUnicode(UnicodeForm form, std::string_view bytes) {
  switch (form) {
    case UnicodeForm::utf8:
      return platform::utf16FromUTF8(bytes);
    case UnicodeForm::utf16BigEndian:
    case UnicodeForm::utf16LittleEndian:
      return utf16(bytes, form == UnicodeForm::utf16BigEndian);
    case UnicodeForm::utf32BigEndian:
    case UnicodeForm::utf32LittleEndian:
      return utf32(bytes, form == UnicodeForm::utf32BigEndian);
  }
  return std::nullopt;
}

}  // namespace kr
