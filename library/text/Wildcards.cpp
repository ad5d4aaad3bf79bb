#include "library/text/Wildcards.h"

#include "library/text/LiteralSearch.h"

namespace kr {
namespace {

constexpr char16_t kStar = u'*';

}  // namespace

bool matchesWildcards(std::u16string_view text, std::u16string_view pattern) {
  std::size_t star = findUnit(pattern, kStar);
  if (star == kNotFound) return text == pattern;

  if (!text.starts_with(pattern.substr(0, star))) return false;
  std::size_t position = star;
  std::size_t start = star + 1;
  // A piece in the middle is found where it stands first: that leaves most of the text to those that follow.
  while ((star = findUnit(pattern, kStar, start)) != kNotFound) {
    const std::u16string_view piece = pattern.substr(start, star - start);
    if (!piece.empty()) {
      const std::size_t found = LiteralSearch(piece).find(text, position);
      if (found == kNotFound) return false;
      position = found + piece.size();
    }
    start = star + 1;
  }
  const std::u16string_view last = pattern.substr(start);
  return position + last.size() <= text.size() && text.ends_with(last);
}

}  // namespace kr
