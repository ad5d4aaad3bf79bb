// Code points, virtual characters, skin colours and white space, of any units.
#include "fuzz/UnitsFuzz.h"
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

  std::size_t passed = 0;
  kr::forEachCodePoint(text, [&passed](char32_t) { ++passed; });
  require(passed <= kr::numberOfCodePoints(text), "no more code points are passed than there are");
  require(kr::utf16Sequence(text).size() == (text.empty() ? 0 : 5 * text.size() - 1),
          "a unit has four digits");
  (void)kr::utf32Sequence(text);
  (void)kr::codePointAt(text, value);

  for (long color = 0; color <= 6; ++color) {
    const auto colored = kr::withSkinColor(text, color);
    if (!colored) continue;
    require(colored != text, "none where nothing changes");
    require(color == 0 || !kr::withSkinColor(*colored, color), "a colour is put on once");
  }

  const auto trimmed = kr::trimmed(text);
  require(!trimmed || !kr::trimmed(*trimmed), "a trimmed text stays as it is");
  const auto line = kr::asSingleLine(text);
  require(!line || !kr::asSingleLine(*line), "a single line stays as it is");
  return 0;
}
