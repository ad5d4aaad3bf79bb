// Texts for rules that have to hold for every text, made the same in every run.
#pragma once

#include <random>
#include <string>
#include <string_view>

namespace kr::testing {

class RandomTexts {
 public:
  explicit RandomTexts(unsigned seed) : random_(seed) {}

  // Below `limit`.
  std::size_t number(std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
  }

  // At most `longest` units, each one of `units`.
  std::u16string of(std::u16string_view units, std::size_t longest) {
    std::u16string text(number(longest + 1), u'\0');
    for (char16_t& unit : text) unit = units[number(units.size())];
    return text;
  }

  // At most `longest` units of every kind: ASCII, other characters, pairs of surrogates, and surrogates
  // alone.
  std::u16string any(std::size_t longest) {
    std::u16string text;
    for (std::size_t count = number(longest + 1); text.size() < count;) {
      switch (number(6)) {
        case 0:
          text += static_cast<char16_t>(0xD800 + number(0x400));
          break;
        case 1:
          text += static_cast<char16_t>(0xDC00 + number(0x400));
          break;
        case 2:
          text += static_cast<char16_t>(number(0x10000));
          break;
        case 3:
          text += static_cast<char16_t>(0x80 + number(0x780));
          break;
        default:
          text += static_cast<char16_t>(number(0x80));
          break;
      }
    }
    return text;
  }

 private:
  std::mt19937 random_;
};

}  // namespace kr::testing
