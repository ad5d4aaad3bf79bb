#include "library/text/Lines.h"

#include <algorithm>
#include <array>

#include "library/text/LiteralSearch.h"

namespace kr {
namespace {

constexpr std::array<std::u16string_view, 3> kLineBreaks{u"\r\n", u"\r", u"\n"};

std::vector<std::u16string_view> splitAt(std::u16string_view text, std::u16string_view separator) {
  std::vector<std::u16string_view> parts;
  LiteralSearch search(separator);
  std::size_t start = 0;
  for (std::size_t found; (found = search.find(text, start)) != kNotFound;) {
    parts.push_back(text.substr(start, found - start));
    start = found + separator.size();
  }
  parts.push_back(text.substr(start));
  return parts;
}

}  // namespace

std::vector<std::u16string_view> lines(std::u16string_view text) {
  for (const std::u16string_view separator : {u"\r\n", u"\n"}) {
    if (LiteralSearch(separator).find(text) != kNotFound) return splitAt(text, separator);
  }
  return splitAt(text, u"\r");
}

std::vector<std::u16string_view> pieces(std::u16string_view text, char16_t separator) {
  std::vector<std::u16string_view> parts = splitAt(text, {&separator, 1});
  if (parts.back().empty()) parts.pop_back();
  return parts;
}

std::optional<std::u16string> withLineSeparator(std::u16string_view text, std::u16string_view separator) {
  std::optional<std::u16string> result;
  for (const std::u16string_view lineBreak : kLineBreaks) {
    if (lineBreak == separator) continue;
    const std::u16string_view current = result ? std::u16string_view(*result) : text;
    if (std::optional<std::u16string> replaced = replacedLiterally(current, lineBreak, separator)) {
      result = std::move(replaced);
    }
  }
  return result;
}

std::u16string repeated(std::u16string_view text, long count) {
  std::u16string result;
  if (count < 1 || text.empty()) return result;
  const auto times = static_cast<std::size_t>(count);
  if (times > result.max_size() / text.size()) return result;
  const std::size_t length = text.size() * times;
  result.reserve(length);
  result = text;
  while (result.size() < length) {
    result.append(result.data(), std::min(result.size(), length - result.size()));
  }
  return result;
}

}  // namespace kr
