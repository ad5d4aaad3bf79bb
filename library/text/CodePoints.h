// Code points of UTF-16 texts. A surrogate that is not part of a pair is a code point of its own, save where
// a rule says otherwise. Any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kr {

[[nodiscard]] constexpr bool isHighSurrogate(char16_t unit) {
  return (unit & 0xFC00) == 0xD800;
}
[[nodiscard]] constexpr bool isLowSurrogate(char16_t unit) {
  return (unit & 0xFC00) == 0xDC00;
}
[[nodiscard]] constexpr char32_t joinedSurrogates(char16_t high, char16_t low) {
  return 0x10000 + ((high - 0xD800U) << 10) + (low - 0xDC00U);
}
[[nodiscard]] constexpr bool startsWithPair(std::u16string_view text) {
  return text.size() > 1 && isHighSurrogate(text[0]) && isLowSurrogate(text[1]);
}

// Appends the code point: one unit below 0x10000, else the units of its surrogate pair. A value beyond
// Unicode's range is cut down to the 16 bits of each unit.
void appendCodePoint(std::u16string& text, char32_t point);

// Units, less the low surrogates that directly follow a high one.
[[nodiscard]] std::size_t numberOfCodePoints(std::u16string_view text);

// The code point that begins at the index; a surrogate that begins no pair as it is. 0 beyond the end.
[[nodiscard]] char32_t codePointAt(std::u16string_view text, std::size_t index);

// Calls with every code point in order. A high surrogate at the end gives no call; one that is followed by
// anything but a low surrogate is skipped together with that unit; a lone low surrogate is passed as it is.
template <class Call>
void forEachCodePoint(std::u16string_view text, Call call) {
  for (std::size_t index = 0; index < text.size(); ++index) {
    const char16_t unit = text[index];
    if (!isHighSurrogate(unit)) {
      call(char32_t{unit});
    } else if (++index < text.size() && isLowSurrogate(text[index])) {
      call(joinedSurrogates(unit, text[index]));
    }
  }
}

// Every unit, or every code point that forEachCodePoint passes, in at least four upper-case hexadecimal
// digits, with commas between them.
[[nodiscard]] std::u16string utf16Sequence(std::u16string_view text);
[[nodiscard]] std::u16string utf32Sequence(std::u16string_view text);

}  // namespace kr
