#include "library/text/Whitespace.h"

#include <algorithm>

#include "library/text/CodePoints.h"
#include "platform/CharacterClasses.h"

namespace kr {
namespace {

template <class Predicate>
std::size_t leading(std::u16string_view text, Predicate isRemoved) {
  return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isRemoved) - text.begin());
}

template <class Predicate>
std::size_t trailing(std::u16string_view text, Predicate isRemoved) {
  return static_cast<std::size_t>(std::find_if_not(text.rbegin(), text.rend(), isRemoved) - text.rbegin());
}

// ASCII is decided here: most characters are that, and the system need not be asked for each.
bool isControl(char32_t point) {
  return point < 0x80 ? point < 0x20 || point == 0x7F : platform::isControlCharacter(point);
}

}  // namespace

std::size_t leadingWhitespace(std::u16string_view text) {
  return leading(text, isWhitespace);
}
std::size_t trailingWhitespace(std::u16string_view text) {
  return trailing(text, isWhitespace);
}

std::optional<std::u16string_view> trimmed(std::u16string_view text) {
  const std::size_t start = leadingWhitespace(text);
  const std::u16string_view rest = text.substr(start);
  const std::size_t end = trailingWhitespace(rest);
  if (start == 0 && end == 0) return std::nullopt;
  return rest.substr(0, rest.size() - end);
}

std::size_t leadingSystemWhitespace(std::u16string_view text) {
  return leading(text, platform::isSpaceOrLineBreak);
}
std::size_t trailingSystemWhitespace(std::u16string_view text) {
  return trailing(text, platform::isSpaceOrLineBreak);
}

std::optional<std::u16string> asSingleLine(std::u16string_view text) {
  std::u16string line;
  line.reserve(text.size());
  for (std::size_t index = 0; index < text.size();) {
    const std::size_t length = startsWithPair(text.substr(index)) ? 2 : 1;
    if (isControl(codePointAt(text, index))) {
      line += u' ';
    } else {
      line += text.substr(index, length);
    }
    index += length;
  }
  line.erase(0, leadingSystemWhitespace(line));
  line.erase(line.size() - trailingSystemWhitespace(line));
  if (line == text) return std::nullopt;
  return line;
}

}  // namespace kr
