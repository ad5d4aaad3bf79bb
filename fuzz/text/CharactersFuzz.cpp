// Code points, virtual characters, skin colours and white space, of any units.
#include <unicode/ustring.h>

#include "fuzz/Units.h"
#include "library/text/CodePoints.h"
#include "library/text/SkinColor.h"
#include "library/text/VirtualCharacters.h"
#include "library/text/Whitespace.h"

using kr::fuzz::require;

namespace {

void character(char32_t value) {
  const std::u16string text = kr::textOfCharacter(value);
  const std::uint32_t* points = kr::codePointsOfVirtualCharacter(value);
  if (points == nullptr) return;
  require(kr::isVirtualCharacter(value), "only virtual characters have a sequence");
  if (value < 0xA0300) {
    require(points[0] == 0x1F1E6 + (value - 0xA0000) / 26 && points[1] == 0x1F1E6 + (value - 0xA0000) % 26,
            "a flag is its two letters");
  }
  std::size_t length = 0;
  while (points[length] != 0) ++length;
  require(length <= 8, "a sequence ends within its row");
  require(kr::numberOfCodePoints(text) == length, "the text of a character has its code points");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto [text, other] = kr::fuzz::twoTexts(data, size);
  kr::defineLigatures({text, other});
  std::uint32_t value = 0;
  std::memcpy(&value, data, std::min(size, sizeof value));
  character(value);
  character(0xA0000 + value % 0x20000);
  require(kr::textOfCharacter(0xB0000) == text, "a ligature is as it was defined");

  const auto count = ::u_countChar32(text.data(), static_cast<std::int32_t>(text.size()));
  require(kr::numberOfCodePoints(text) == static_cast<std::size_t>(count),
          "code points are as ICU counts them");
  std::u16string passed;
  std::size_t calls = 0;
  kr::forEachCodePoint(text, [&](char32_t point) {
    kr::appendCodePoint(passed, point);
    ++calls;
  });
  require(calls <= kr::numberOfCodePoints(text), "no more code points are passed than there are");
  const bool hasLoneHigh = passed != text;
  require(!hasLoneHigh || std::any_of(text.begin(), text.end(), kr::isHighSurrogate),
          "only a high surrogate is skipped");
  const std::u16string list = kr::utf32Sequence(text);
  require(calls ==
              (list.empty() ? 0U : 1U) + static_cast<std::size_t>(std::count(list.begin(), list.end(), u',')),
          "every code point passed is in the list");
  require(kr::utf16Sequence(text).size() == (text.empty() ? 0 : 5 * text.size() - 1),
          "a unit has four digits");
  require(value < text.size() || kr::codePointAt(text, value) == 0, "beyond the end there is nothing");

  for (long color = 0; color <= 6; ++color) {
    const auto colored = kr::withSkinColor(text, color);
    if (!colored) continue;
    require(colored != text, "none where nothing changes");
    require(color == 0 || !kr::withSkinColor(*colored, color), "a colour is put on once");
  }

  const auto first = std::find_if_not(text.begin(), text.end(), kr::isWhitespace);
  const auto last =
      std::find_if_not(text.rbegin(), std::make_reverse_iterator(first), kr::isWhitespace).base();
  const auto trimmed = kr::trimmed(text);
  require(trimmed.value_or(text) == std::u16string_view(first, last), "white space is taken from both ends");
  require(!trimmed || !kr::trimmed(*trimmed), "a trimmed text stays as it is");
  const auto line = kr::asSingleLine(text);
  require(!line || !kr::asSingleLine(*line), "a single line stays as it is");
  return 0;
}
