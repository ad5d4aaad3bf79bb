#include "platform/Letters.h"

#import <Foundation/Foundation.h>

namespace kr::platform {
namespace {

constexpr char32_t kLastASCII = 0x7F;

bool isLead(char16_t unit) {
  return (unit & 0xFC00) == 0xD800;
}

bool isTrail(char16_t unit) {
  return (unit & 0xFC00) == 0xDC00;
}

bool isLetter(char32_t character) {
  if (character <= kLastASCII) return (character | 0x20) >= U'a' && (character | 0x20) <= U'z';
  return [[NSCharacterSet letterCharacterSet] longCharacterIsMember:character] != NO;
}

}  // namespace

// Searching a string for a character of the set looks at single units on GNUstep, and so finds no letter
// that takes two.
LetterRange firstLetter(std::u16string_view text) noexcept {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isPair = isLead(text[i]) && i + 1 < text.size() && isTrail(text[i + 1]);
    if (isPair) {
      const char32_t character = 0x10000 + ((text[i] & 0x3FFu) << 10) + (text[i + 1] & 0x3FFu);
      if (isLetter(character)) return {i, 2};
      ++i;
    } else if (isLetter(text[i])) {
      return {i, 1};
    }
  }
  return {};
}

}  // namespace kr::platform
