#include "platform/CharacterClasses.h"

#include <unicode/uchar.h>

#include <cstdint>

namespace kr::platform {
namespace {

bool isOfCategories(char32_t point, std::uint32_t mask) {
  return (U_MASK(::u_charType(static_cast<UChar32>(point))) & mask) != 0;
}

}  // namespace

bool isControlCharacter(char32_t point) {
  return isOfCategories(point, U_GC_CC_MASK | U_GC_CF_MASK);
}

bool isAlphanumeric(char32_t point) {
  return isOfCategories(point, U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK);
}

bool isIllegalCharacter(char32_t point) {
  return isOfCategories(point, U_GC_CN_MASK);
}

// As Cocoa has it, with the zero width space that Unicode no longer counts among the spaces.
bool isSpaceOrLineBreak(char32_t point) {
  constexpr char32_t kZeroWidthSpace = 0x200B;
  const bool isLineBreak = (point >= 0xA && point <= 0xD) || point == 0x85;
  return point == '\t' || isLineBreak || point == kZeroWidthSpace || isOfCategories(point, U_GC_Z_MASK);
}

}  // namespace kr::platform
