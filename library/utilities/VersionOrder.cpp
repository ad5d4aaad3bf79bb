#include "library/utilities/VersionOrder.h"

#include <algorithm>

#include "library/text/NumericOrder.h"
#include "platform/Letters.h"

namespace kr {
namespace {

constexpr std::u16string_view kStages = u"pdabf ";
constexpr char16_t kRelease = u' ';

struct Version {
  std::u16string_view base;
  unsigned stage;
  std::u16string_view build;
};

Version split(std::u16string_view text) {
  const platform::LetterRange letter = platform::firstLetter(text);
  if (letter.length == 0) return {text, developmentStage(kRelease), u"0"};
  return {text.substr(0, letter.location), developmentStage(text[letter.location]),
          text.substr(letter.location + letter.length)};
}

}  // namespace

unsigned developmentStage(char16_t letter) noexcept {
  const std::size_t index = kStages.find(letter);
  return index == std::u16string_view::npos ? 0 : static_cast<unsigned>(index);
}

std::weak_ordering versionOrder(std::u16string_view one, std::u16string_view other) {
  const Version first = split(one);
  const Version second = split(other);
  if (const auto bases = numericOrder(first.base, second.base); bases != 0) return bases;
  if (first.stage != second.stage) return first.stage <=> second.stage;
  return numericOrder(first.build, second.build);
}

std::u16string_view plainVersion(std::u16string_view version) noexcept {
  return version.substr(0, version.find_first_not_of(u"0123456789."));
}

}  // namespace kr
