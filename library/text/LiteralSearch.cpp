#include "library/text/LiteralSearch.h"

#include <algorithm>

namespace kr {
namespace {

// A block is looked at as a whole, many units at once, before any of its units is looked at alone.
constexpr std::size_t kBlock = 64;

// The first index at or after `from` for which one of `count` places of the text passes both tests.
std::size_t findEnds(std::u16string_view text, std::size_t from, char16_t first, char16_t last,
                     std::size_t length) {
  if (text.size() < length) return kNotFound;
  const std::size_t places = text.size() - length + 1;
  const char16_t* const starts = text.data();
  const char16_t* const ends = starts + length - 1;
  std::size_t at = from;
  for (; at + kBlock <= places; at += kBlock) {
    std::uint16_t found = 0;
    for (std::size_t index = at; index < at + kBlock; ++index) {
      found |= static_cast<std::uint16_t>((starts[index] == first) & (ends[index] == last));
    }
    if (found != 0) break;
  }
  for (; at < places; ++at) {
    if (starts[at] == first && ends[at] == last) return at;
  }
  return kNotFound;
}

// For each beginning of the text, the length of its longest part that stands at both of its ends.
std::vector<std::size_t> bordersOf(std::u16string_view text) {
  std::vector<std::size_t> borders(text.size(), 0);
  for (std::size_t index = 1, border = 0; index < text.size(); ++index) {
    while (border > 0 && text[index] != text[border]) border = borders[border - 1];
    if (text[index] == text[border]) ++border;
    borders[index] = border;
  }
  return borders;
}

}  // namespace

std::size_t findUnit(std::u16string_view text, char16_t unit, std::size_t from) {
  return findEnds(text, from, unit, unit, 1);
}

std::size_t LiteralSearch::find(std::u16string_view text, std::size_t from) {
  if (wanted_.empty()) return kNotFound;
  // Places whose first and last units are right are compared in full. What those comparisons cost in vain is
  // allowed to be as much as the way that the search has come; after that it never goes back.
  std::size_t spent = 0;
  for (std::size_t at = from; borders_.empty();) {
    at = findEnds(text, at, wanted_.front(), wanted_.back(), wanted_.size());
    if (at == kNotFound) return kNotFound;
    const auto differing =
        std::mismatch(wanted_.begin(), wanted_.end(), text.begin() + static_cast<std::ptrdiff_t>(at)).first;
    if (differing == wanted_.end()) return at;
    spent += static_cast<std::size_t>(differing - wanted_.begin());
    ++at;
    if (spent > at - from + wanted_.size()) {
      from = at;
      borders_ = bordersOf(wanted_);
    }
  }
  return findWithoutGoingBack(text, from);
}

std::size_t LiteralSearch::findWithoutGoingBack(std::u16string_view text, std::size_t from) {
  std::size_t matched = 0;
  for (std::size_t at = from; at < text.size(); ++at) {
    while (matched > 0 && text[at] != wanted_[matched]) matched = borders_[matched - 1];
    if (text[at] == wanted_[matched]) ++matched;
    if (matched == wanted_.size()) return at + 1 - matched;
  }
  return kNotFound;
}

std::optional<std::u16string> replacedLiterally(std::u16string_view text, std::u16string_view wanted,
                                                std::u16string_view replacement) {
  LiteralSearch search(wanted);
  std::size_t found = search.find(text);
  if (found == kNotFound) return std::nullopt;
  std::u16string result;
  result.reserve(text.size());
  std::size_t start = 0;
  for (; found != kNotFound; found = search.find(text, start)) {
    result += text.substr(start, found - start);
    result += replacement;
    start = found + wanted.size();
  }
  result += text.substr(start);
  return result;
}

}  // namespace kr
