#include "library/text/PercentEscapes.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

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

constexpr std::array<std::int8_t, 128> digitValues() {
  std::array<std::int8_t, 128> values{};
  values.fill(-1);
  for (std::int8_t value = 0; value < 16; ++value) {
    const char16_t digit = kHexDigits[static_cast<std::size_t>(value)];
    values[digit] = value;
    if (value >= 10) values[digit + (u'a' - u'A')] = value;
  }
  return values;
}
constexpr std::array<std::int8_t, 128> kDigitValues = digitValues();

// -1 for what is no hexadecimal digit.
constexpr int digitValue(char16_t unit) {
  return unit < kDigitValues.size() ? kDigitValues[unit] : -1;
}

constexpr std::size_t kEscapeLength = 3;

// The byte of the escape at the start of the text, -1 when there is none.
int byteOfEscape(std::u16string_view text) {
  if (text.size() < kEscapeLength || text[0] != kPercent) return -1;
  const int high = digitValue(text[1]);
  const int low = digitValue(text[2]);
  return high < 0 || low < 0 ? -1 : high << 4 | low;
}

// The longest escape of one unit: three bytes of UTF-8.
constexpr std::size_t kLongestEscape = 3 * kEscapeLength;

char16_t* putEscape(char16_t* end, unsigned byte) {
  *end++ = kPercent;
  *end++ = kHexDigits[byte >> 4U];
  *end++ = kHexDigits[byte & 0xFU];
  return end;
}

// One escape for each byte of the character, which is outside ASCII.
char16_t* putEscapes(char16_t* end, char32_t point) {
  const auto following = [point](unsigned shift) { return 0x80U | (point >> shift & 0x3FU); };
  if (point < 0x800) {
    end = putEscape(end, 0xC0U | point >> 6U);
  } else if (point < 0x10000) {
    end = putEscape(end, 0xE0U | point >> 12U);
    end = putEscape(end, following(6));
  } else {
    end = putEscape(end, 0xF0U | point >> 18U);
    end = putEscape(end, following(12));
    end = putEscape(end, following(6));
  }
  return putEscape(end, following(0));
}

// Adds the escapes, without one for "#" where that is to stay.
std::optional<std::u16string> withEscapesAdded(std::u16string_view text, bool keepsNumberSigns) {
  std::u16string result;
  result.reserve(text.size() + text.size() / 2);
  // Written in parts, each with room for the longest escapes and the second half of a pair.
  constexpr std::size_t kPart = 512;
  std::array<char16_t, (kPart + 1) * kLongestEscape> part;  // NOLINT: written before it is read
  for (std::size_t index = 0; index < text.size();) {
    char16_t* end = part.data();
    for (const std::size_t stop = std::min(index + kPart, text.size()); index < stop; ++index) {
      const char16_t unit = text[index];
      if (isAllowed(unit) || (unit == u'#' && keepsNumberSigns)) {
        *end++ = unit;
      } else if (unit < kAllowed.size()) {
        end = putEscape(end, unit);
      } else if (startsWithPair(text.substr(index))) {
        end = putEscapes(end, codePointAt(text, index++));
      } else if (isHighSurrogate(unit) || isLowSurrogate(unit)) {
        return std::nullopt;
      } else {
        end = putEscapes(end, unit);
      }
    }
    result.append(part.data(), end);
  }
  return result;
}

}  // namespace

std::optional<std::u16string> withPercentEscapesExpanded(std::u16string_view text) {
  std::u16string result(text.size(), u'\0');
  char16_t* end = result.data();
  std::string bytes;
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] != kPercent) {
      *end++ = text[at++];
      continue;
    }
    int byte = byteOfEscape(text.substr(at));
    if (byte < 0) return std::nullopt;
    if (byte < 0x80) {
      *end++ = static_cast<char16_t>(byte);
      at += kEscapeLength;
      continue;
    }
    // A character of several bytes is within one run of escapes.
    for (bytes.clear(); byte >= 0x80; byte = byteOfEscape(text.substr(at))) {
      bytes += static_cast<char>(byte);
      at += kEscapeLength;
    }
    const std::optional<std::size_t> length = platform::decodeUTF8(bytes, end);
    if (!length) return std::nullopt;
    end += *length;
  }
  result.resize(static_cast<std::size_t>(end - result.data()));
  return result;
}

std::optional<std::u16string> withPercentEscapesAdded(std::u16string_view text) {
  return withEscapesAdded(text, false);
}

std::optional<std::u16string> withPercentEscapes(std::u16string_view text) {
  // Every "%" of the result begins an escape: never to write "%23" is as good as to turn it back.
  if (findUnit(text, kPercent) == kNotFound) return withEscapesAdded(text, true);
  const std::optional<std::u16string> plain = withPercentEscapesExpanded(text);
  if (!plain) return std::nullopt;
  return withEscapesAdded(*plain, true);
}

}  // namespace kr
