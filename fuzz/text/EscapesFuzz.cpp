// Backslash and percent escapes, and numbers, of any units.
#include <optional>

#include "fuzz/Units.h"
#include "library/text/CodePoints.h"
#include "library/text/Escapes.h"
#include "library/text/Numbers.h"
#include "library/text/PercentEscapes.h"

using kr::fuzz::require;

namespace {

// The rule word by word: a text, a copy that is edited in place, and places that go from one to the other. No
// pair is among the characters.
std::optional<std::u16string> escapedInPlace(const std::u16string& text, std::u16string_view characters) {
  std::optional<std::u16string> copy;
  for (std::size_t start = 0;;) {
    const std::size_t found = text.find_first_of(characters, start);
    if (found == std::u16string::npos) return copy;
    if (!copy) copy = text;
    const std::size_t control = std::u16string_view(u"\t\r\n").find((*copy)[found]);
    if (control == std::u16string_view::npos) {
      copy->insert(found, 1, u'\\');
    } else {
      copy->replace(found, 1, std::u16string{u'\\', u"trn"[control]});
    }
    start = found + 2;
  }
}

// And back, from a text in which every one of the characters is escaped.
void escapesOf(const std::u16string& text, std::u16string_view characters) {
  require(kr::escaped(text, characters) == escapedInPlace(text, characters),
          "a text is escaped as the rule says");
  std::u16string escaped;
  for (const char16_t unit : text) {
    const std::size_t control = std::u16string_view(u"\t\r\n").find(unit);
    if (characters.find(unit) != characters.npos) escaped += u'\\';
    escaped += control == std::u16string_view::npos || characters.find(unit) == characters.npos
                   ? unit
                   : u"trn"[control];
  }
  // A letter that stands for a control character is not itself behind a backslash.
  if (characters.find(u'\\') == characters.npos || characters.find_first_of(u"trn") != characters.npos)
    return;
  require(kr::withEscapesExpanded(escaped, characters).value_or(escaped) == text,
          "all escapes can be expanded");
}

// Every backslash is looked at with the unit behind it, and with no other one.
std::u16string controlEscapesExpanded(std::u16string_view text, bool includingBackslash) {
  std::u16string result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    result += text[at];
    if (text[at] != u'\\' || at + 1 == text.size()) continue;
    const std::size_t found = std::u16string_view(u"trn\\").find(text[++at]);
    if (found < (includingBackslash ? 4 : 3)) {
      result.back() = u"\t\r\n\\"[found];
    } else {
      result += text[at];
    }
  }
  return result;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto [text, other] = kr::fuzz::twoTexts(data, size);
  escapesOf(text, kr::kEscapeCharacters);
  escapesOf(text, u",;\t\\");
  if (std::none_of(other.begin(), other.end(), kr::isHighSurrogate)) escapesOf(text, other);

  for (const bool includingBackslash : {false, true}) {
    require(kr::withControlEscapesExpanded(text, includingBackslash).value_or(text) ==
                controlEscapesExpanded(text, includingBackslash),
            "control characters are expanded as the rule says");
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

  const std::string ascii(text.begin(),
                          std::find_if(text.begin(), text.end(), [](char16_t unit) { return unit >= 0x80; }));
  require(kr::numericValue(text) == std::strtol(ascii.c_str(), nullptr, 0), "an integer is as C reads it");
  require(!kr::isIntegerNumber(text) || kr::smartFloatValue(text) >= 0, "digits are no negative number");
  require(kr::withDecimalPoint(text).find(u',') == std::u16string::npos, "no comma is left");
  return 0;
}
