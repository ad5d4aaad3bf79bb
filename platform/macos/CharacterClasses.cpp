#include "platform/CharacterClasses.h"

#include <CoreFoundation/CoreFoundation.h>

namespace kr::platform {
namespace {

bool isMember(CFCharacterSetPredefinedSet set, char32_t point) {
  return CFCharacterSetIsLongCharacterMember(CFCharacterSetGetPredefined(set), point);
}

}  // namespace

bool isControlCharacter(char32_t point) {
  return isMember(kCFCharacterSetControl, point);
}

bool isAlphanumeric(char32_t point) {
  return isMember(kCFCharacterSetAlphaNumeric, point);
}

bool isIllegalCharacter(char32_t point) {
  return isMember(kCFCharacterSetIllegal, point);
}

bool isSpaceOrLineBreak(char32_t point) {
  return isMember(kCFCharacterSetWhitespaceAndNewline, point);
}

}  // namespace kr::platform
