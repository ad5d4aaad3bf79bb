#include "library/text/XMLElement.h"

#include <string>

#include "library/text/LiteralSearch.h"

namespace kr {

std::optional<std::u16string_view> xmlElement(std::u16string_view text, std::u16string_view key) {
  std::u16string tag = u"<";
  tag += key;
  tag += u">";
  std::size_t start = LiteralSearch(tag).find(text);
  if (start == kNotFound) return std::nullopt;
  start += tag.size();
  tag.insert(1, u"/");
  const std::size_t end = LiteralSearch(tag).find(text, start);
  if (end == kNotFound) return std::nullopt;
  return text.substr(start, end - start);
}

}  // namespace kr
