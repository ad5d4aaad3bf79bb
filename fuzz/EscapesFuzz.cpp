// Backslash and percent escapes, and numbers, of any units.
#include "fuzz/UnitsFuzz.h"
#include "library/text/Escapes.h"
#include "library/text/Numbers.h"
#include "library/text/PercentEscapes.h"

using kr::fuzz::require;

namespace {

// How many units of the text are one of the characters; no pair is among them.
std::size_t occurrences(std::u16string_view text, std::u16string_view characters) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [characters](char16_t unit) {
    return characters.find(unit) != std::u16string_view::npos;
  }));
}

void escapesOf(std::u16string_view text, std::u16string_view characters) {
  const auto there = kr::escaped(text, characters);
  if (!there) return;
  require(there->size() > text.size() && there->size() <= 2 * text.size(), "every edit adds one unit");
  const auto back = kr::withEscapesExpanded(*there, characters);
  if (occurrences(text, characters) == 1 &&
      occurrences(text, u"\\") ==
          (text.find(u'\\') != text.npos && characters.find(u'\\') != characters.npos ? 1 : 0)) {
    require(back == text, "one escape comes back as it was");
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto [text, other] = kr::fuzz::twoTexts(data, size);
  escapesOf(text, kr::kEscapeCharacters);
  escapesOf(text, u",;\t");
  (void)kr::escaped(text, other);

  for (const bool includingBackslash : {false, true}) {
    const auto expanded = kr::withControlEscapesExpanded(text, includingBackslash);
    require(!expanded || expanded->size() < text.size(), "expanding makes a text shorter");
  }
  const auto expanded = kr::withEscapesExpanded(text, other);
  require(!expanded || expanded->size() < text.size(), "expanding makes a text shorter");
  require(kr::textOfObjCLiteral(text).size() <= text.size(), "a literal is longer than its text");

  if (const auto escaped = kr::withPercentEscapesAdded(text)) {
    require(kr::withPercentEscapesExpanded(*escaped) == text, "percent escapes come back as they were");
  }
  if (const auto url = kr::withPercentEscapes(text)) {
    require(kr::withPercentEscapes(*url) == url, "nothing is escaped twice");
  }

  (void)kr::numericValue(text);
  require(!kr::isIntegerNumber(text) || kr::smartFloatValue(text) >= 0, "digits are no negative number");
  require(kr::withDecimalPoint(text).find(u',') == std::u16string::npos, "no comma is left");
  return 0;
}
