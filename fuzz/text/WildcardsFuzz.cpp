// Wildcards and searches, against slower ways to the same answer.
#include <compare>
#include <vector>

#include "fuzz/Units.h"
#include "library/text/CodePoints.h"
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

// The texts as lists: a number of any length, in a length that all have, or a code point.
std::vector<std::u32string> parts(std::u16string_view text) {
  std::vector<std::u32string> list;
  for (std::size_t index = 0; index < text.size();) {
    std::u32string digits;
    while (index < text.size() && text[index] >= u'0' && text[index] <= u'9')
      digits += char32_t{text[index++]};
    const char32_t point = digits.empty() ? kr::codePointAt(text, index) : digits.front();
    list.push_back({point});
    if (!digits.empty()) list.back() += std::u32string(300 - digits.size(), U'0') + digits;
    if (digits.empty()) index += point >= 0x10000 ? 2 : 1;
  }
  return list;
}

std::strong_ordering orderOfParts(std::u16string_view one, std::u16string_view other) {
  const std::vector<std::u32string> these = parts(one), those = parts(other);
  for (std::size_t index = 0; index < std::min(these.size(), those.size()); ++index) {
    const bool areNumbers = these[index].size() > 1 && those[index].size() > 1;
    const auto order = areNumbers ? these[index].substr(1) <=> those[index].substr(1)
                                  : these[index].front() <=> those[index].front();
    if (order != 0) return order;
  }
  return these.size() <=> those.size();
}

// Every occurrence, one after the other.
void replace(std::u16string& text, std::u16string_view wanted, std::u16string_view replacement) {
  for (std::size_t at = 0; (at = text.find(wanted, at)) != text.npos; at += replacement.size()) {
    text.replace(at, wanted.size(), replacement);
  }
}

void lines(const std::u16string& text, std::u16string_view separator) {
  std::u16string replaced = text;
  for (const std::u16string_view lineBreak : {u"\r\n", u"\r", u"\n"}) {
    if (lineBreak != separator) replace(replaced, lineBreak, separator);
  }
  require(kr::withLineSeparator(text, separator).value_or(text) == replaced,
          "line breaks are replaced in their order");

  const std::vector<std::u16string_view> list = kr::lines(text);
  const std::u16string lineBreak = text.find(u"\r\n") != text.npos ? u"\r\n"
                                   : text.find(u'\n') != text.npos ? u"\n"
                                                                   : u"\r";
  std::u16string joined(list.front());
  for (std::size_t index = 1; index < list.size(); ++index) joined.append(lineBreak).append(list[index]);
  require(joined == text, "lines and line breaks make up the text");

  joined.clear();
  for (const std::u16string_view piece : kr::pieces(text, u'a')) joined.append(piece).append(u"a");
  require(joined == (text.empty() || text.ends_with(u'a') ? text : text + u"a"),
          "every piece has a separator behind it, or the end of the text");
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
  lines(text, other);
  lines(text, u"\n");

  const auto order = kr::numericOrder(text, other);
  require(order == orderOfParts(text, other), "texts are ordered as lists of numbers and characters");
  const auto early =
      kr::numericOrderOfBeginnings(text.substr(0, text.size() / 2), other.substr(0, other.size() / 2));
  require(!early || *early == order, "beginnings decide as the texts do");
  std::u16string capitals = text;
  for (char16_t& unit : capitals) unit = unit >= u'a' && unit <= u'z' ? unit - (u'a' - u'A') : unit;
  require(kr::caseInsensitiveNumericOrder(text, capitals) == 0, "case does not count");
  require(kr::caseInsensitiveNumericOrder(text, other) == kr::caseInsensitiveNumericOrder(capitals, other),
          "case does not count");
  return 0;
}
