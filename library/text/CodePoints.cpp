#include "library/text/CodePoints.h"

#include <algorithm>
#include <cstdint>

namespace kr {
namespace {

constexpr std::u16string_view kHexDigits = u"0123456789ABCDEF";
constexpr int kFewestDigits = 4;

void appendHexadecimal(std::u16string& list, char32_t value) {
  if (!list.empty()) list += u',';
  int digits = kFewestDigits;
  while (digits < 8 && value >> (4 * digits) != 0) ++digits;
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) list += kHexDigits[value >> shift & 0xF];
}

}  // namespace

void appendCodePoint(std::u16string& text, char32_t point) {
  if (point < 0x10000) {
    text += static_cast<char16_t>(point);
    return;
  }
  text += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
  text += static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
}

std::size_t numberOfCodePoints(std::u16string_view text) {
  // In blocks whose count fits the width of a unit, so that the loop runs on many units at once.
  constexpr std::size_t kBlock = 1 << 15;
  std::size_t pairs = 0;
  for (std::size_t start = 0; start + 1 < text.size(); start += kBlock) {
    const std::size_t end = std::min(start + kBlock, text.size() - 1);
    std::uint16_t here = 0;
    for (std::size_t at = start; at < end; ++at) {
      // Both are looked at, so that there is no branch.
      const unsigned high = isHighSurrogate(text[at]) ? 1 : 0;
      const unsigned low = isLowSurrogate(text[at + 1]) ? 1 : 0;
      here = static_cast<std::uint16_t>(here + (high & low));
    }
    pairs += here;
  }
  return text.size() - pairs;
}

char32_t codePointAt(std::u16string_view text, std::size_t index) {
  if (index >= text.size()) return 0;
  const std::u16string_view rest = text.substr(index);
  return startsWithPair(rest) ? joinedSurrogates(rest[0], rest[1]) : rest[0];
}

std::u16string utf16Sequence(std::u16string_view text) {
  std::u16string list;
  list.reserve(text.size() * 5);
  for (const char16_t unit : text) appendHexadecimal(list, unit);
  return list;
}

std::u16string utf32Sequence(std::u16string_view text) {
  std::u16string list;
  list.reserve(text.size() * 5);
  forEachCodePoint(text, [&list](char32_t point) { appendHexadecimal(list, point); });
  return list;
}

}  // namespace kr
