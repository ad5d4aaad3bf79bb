// Wildcards and searches, against slower ways to the same answer.
#include <vector>

#include "fuzz/UnitsFuzz.h"
#include "library/text/Lines.h"
#include "library/text/LiteralSearch.h"
#include "library/text/NumericOrder.h"
#include "library/text/Wildcards.h"

using kr::fuzz::require;

namespace {

// Whether the text matches, told place by place: which beginnings of the pattern match which beginnings of
// it.
bool matchesByTable(std::u16string_view text, std::u16string_view pattern) {
  std::vector<bool> matches(text.size() + 1, false);
  matches[0] = true;
  for (const char16_t unit : pattern) {
    std::vector<bool> next(text.size() + 1, false);
    if (unit == u'*') {
      bool any = false;
      for (std::size_t length = 0; length <= text.size(); ++length)
        next[length] = any = any || matches[length];
    } else {
      for (std::size_t length = 1; length <= text.size(); ++length) {
        next[length] = matches[length - 1] && text[length - 1] == unit;
      }
    }
    matches = std::move(next);
  }
  return matches[text.size()];
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // The table takes time that grows with the product of the lengths.
  constexpr std::size_t kLongest = 200;
  const auto [text, other] = kr::fuzz::twoTexts(data, std::min(size, kLongest));
  require(kr::matchesWildcards(text, other) == matchesByTable(text, other), "a pattern matches what it says");

  // The same with few different units, which match more often.
  std::u16string few = text, pattern = other;
  for (char16_t& unit : few) unit = static_cast<char16_t>(u'a' + unit % 2);
  for (char16_t& unit : pattern) unit = u"ab*"[unit % 3];
  require(kr::matchesWildcards(few, pattern) == matchesByTable(few, pattern),
          "a pattern matches what it says");

  std::erase(pattern, u'*');
  require(pattern.empty() || kr::LiteralSearch(pattern).find(few) == few.find(pattern),
          "a search finds the first");
  const auto lines = kr::lines(text);
  require(!lines.empty() && lines.back().data() + lines.back().size() == text.data() + text.size(),
          "the last line ends with the text");
  require(kr::pieces(text, u'a').size() <= text.size() + 1, "there are no more pieces than separators");
  (void)kr::withLineSeparator(text, other);

  const auto order = kr::numericOrder(text, other);
  require((order < 0) == (kr::numericOrder(other, text) > 0), "the order of two texts is one");
  const auto early =
      kr::numericOrderOfBeginnings(text.substr(0, text.size() / 2), other.substr(0, other.size() / 2));
  require(!early || *early == order, "beginnings decide as the texts do");
  (void)kr::caseInsensitiveNumericOrder(text, other);
  return 0;
}
