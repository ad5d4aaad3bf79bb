#include "library/text/Plausibility.h"

#include "platform/CharacterClasses.h"

namespace kr {
namespace {

constexpr std::size_t kMostUnits = 1000;
constexpr char16_t kFirstBeyondControls = 33;
constexpr int kIllegal = 10;

}  // namespace

float plausibility(std::u16string_view text) {
  const std::u16string_view start = text.substr(0, kMostUnits);
  int good = 0;
  int bad = 0;
  for (const char16_t unit : start) {
    if (unit < kFirstBeyondControls) {
      const bool isExpected = unit == u'\t' || unit == u'\n' || unit == u'\r' || unit == u' ';
      ++(isExpected ? good : bad);
    } else if (platform::isAlphanumeric(unit)) {
      ++good;
    } else if (platform::isIllegalCharacter(unit)) {
      bad += kIllegal;
    }
  }
  return static_cast<float>(good - bad) / static_cast<float>(start.size());
}

}  // namespace kr
