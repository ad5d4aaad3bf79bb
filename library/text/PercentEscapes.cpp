#include "library/text/PercentEscapes.h"

#include <array>

#include "library/text/CodePoints.h"
#include "library/text/LiteralSearch.h"
#include "platform/UTF8Bytes.h"

namespace kr {
namespace {

constexpr char16_t kPercent = u'%';
constexpr std::u16string_view kHexDigits = u"0123456789ABCDEF";

constexpr std::array<bool, 128> allowedCharacters() {
  std::array<bool, 128> allowed{};
  for (char character = 'a'; character <= 'z'; ++character)
    allowed[static_cast<unsigned char>(character)] = true;
  for (char character = 'A'; character <= 'Z'; ++character)
    allowed[static_cast<unsigned char>(character)] = true;
  for (const char character : std::string_view("0123456789-_.!~*'();/?:@&=+$,")) {
    allowed[static_cast<unsigned char>(character)] = true;
  }
  return allowed;
}
constexpr std::array<bool, 128> kAllowed = allowedCharacters();

constexpr bool isAllowed(char16_t unit) {
  return unit < kAllowed.size() && kAllowed[unit];
}

// -1 for what is no hexadecimal digit.
constexpr int digitValue(char16_t unit) {
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
  if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
  return -1;
}

// The byte of the escape at the start of the text, -1 when there is none.
int byteOfEscape(std::u16string_view text) {
  if (text.size() < 3 || text[0] != kPercent) return -1;
  const int high = digitValue(text[1]);
  const int low = digitValue(text[2]);
  return high < 0 || low < 0 ? -1 : high << 4 | low;
}

void appendEscape(std::u16string& text, unsigned char byte) {
  text += kPercent;
  text += kHexDigits[byte >> 4U];
  text += kHexDigits[byte & 0xFU];
}

}  // namespace

std::optional<std::u16string> withPercentEscapesExpanded(std::u16string_view text) {
  std::u16string result;
  result.reserve(text.size());
  std::string bytes;
  for (;;) {
    const std::size_t escape = findUnit(text, kPercent);
    result += text.substr(0, escape);
    if (escape == kNotFound) return result;
    text.remove_prefix(escape);
    bytes.clear();
    for (int byte; (byte = byteOfEscape(text)) >= 0; text.remove_prefix(3)) bytes += static_cast<char>(byte);
    const std::optional<std::u16string> characters = platform::utf16FromUTF8(bytes);
    if (bytes.empty() || !characters) return std::nullopt;
    result += *characters;
  }
}

std::optional<std::u16string> withPercentEscapesAdded(std::u16string_view text) {
  std::u16string result;
  result.reserve(text.size() + text.size() / 4);
  std::size_t index = 0;
  while (index < text.size()) {
    const std::size_t start = index;
    while (index < text.size() && isAllowed(text[index])) ++index;
    result += text.substr(start, index - start);
    if (index == text.size()) break;
    const char16_t unit = text[index];
    if (unit < kAllowed.size()) {
      appendEscape(result, static_cast<unsigned char>(unit));
      ++index;
      continue;
    }
    const std::size_t length = startsWithPair(text.substr(index)) ? 2 : 1;
    if (length == 1 && (isHighSurrogate(unit) || isLowSurrogate(unit))) return std::nullopt;
    for (const char byte : platform::bytesFromUTF16(text.substr(index, length))) {
      appendEscape(result, static_cast<unsigned char>(byte));
    }
    index += length;
  }
  return result;
}

std::optional<std::u16string> withPercentEscapes(std::u16string_view text) {
  const std::optional<std::u16string> plain = withPercentEscapesExpanded(text);
  if (!plain) return std::nullopt;
  std::optional<std::u16string> result = withPercentEscapesAdded(*plain);
  if (!result) return std::nullopt;
  std::optional<std::u16string> withNumberSigns = replacedLiterally(*result, u"%23", u"#");
  return withNumberSigns ? withNumberSigns : result;
}

}  // namespace kr
