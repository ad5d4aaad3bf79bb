#include "library/text/SkinColor.h"

#include <array>

#include "library/text/CodePoints.h"

namespace kr {
namespace {

// By colour, from 1 on. The first two share the lightest modifier.
constexpr std::array<std::u16string_view, 6> kModifiers{u"\U0001F3FB", u"\U0001F3FB", u"\U0001F3FC",
                                                        u"\U0001F3FD", u"\U0001F3FE", u"\U0001F3FF"};
constexpr char16_t kModifierHigh = 0xD83C;
constexpr char16_t kFirstModifierLow = 0xDFFB;
constexpr std::size_t kModifierLength = 2;

constexpr char16_t kEmojiPresentation = 0xFE0F;

std::u16string_view modifierFor(long color) {
  if (color < 1 || color > static_cast<long>(kModifiers.size())) return {};
  return kModifiers[static_cast<std::size_t>(color - 1)];
}

// Where the first modifier behind the first unit begins; npos when there is none.
std::size_t findModifier(std::u16string_view emoji) {
  for (std::size_t index = 1; index + 1 < emoji.size(); ++index) {
    if (emoji[index] == kModifierHigh && emoji[index + 1] >= kFirstModifierLow &&
        isLowSurrogate(emoji[index + 1])) {
      return index;
    }
  }
  return std::u16string_view::npos;
}

std::u16string joined(std::u16string_view before, std::u16string_view modifier, std::u16string_view after) {
  std::u16string text(before);
  text += modifier;
  text += after;
  return text;
}

}  // namespace

std::optional<std::u16string> withSkinColor(std::u16string_view emoji, long color) {
  if (emoji.empty()) return std::nullopt;
  const std::u16string_view wanted = modifierFor(color);
  const std::size_t found = findModifier(emoji);
  if (found != std::u16string_view::npos) {
    if (emoji.substr(found, kModifierLength) == wanted) return std::nullopt;
    return joined(emoji.substr(0, found), wanted, emoji.substr(found + kModifierLength));
  }
  if (wanted.empty()) return std::nullopt;
  const std::size_t first = startsWithPair(emoji) ? 2 : 1;
  std::u16string_view rest = emoji.substr(first);
  if (rest.starts_with(kEmojiPresentation)) rest.remove_prefix(1);
  return joined(emoji.substr(0, first), wanted, rest);
}

}  // namespace kr
