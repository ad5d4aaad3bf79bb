// Inputs as UTF-16 units, any of them.
#pragma once

#include <cstring>
#include <utility>

#include "fuzz/Fuzz.h"

namespace kr::fuzz {

inline std::u16string units(std::string_view bytes) {
  std::u16string text(bytes.size() / sizeof(char16_t), u'\0');
  if (!text.empty()) std::memcpy(text.data(), bytes.data(), text.size() * sizeof(char16_t));
  return text;
}

// Two texts out of one input. The first byte says how: whether the bytes are units or characters of ASCII,
// which a rule is more likely to look at, and how many of them make up the second text.
inline std::pair<std::u16string, std::u16string> twoTexts(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return {};
  const std::string_view bytes = text(data + 1, size - 1);
  const std::size_t split = std::min<std::size_t>(data[0] >> 1U, bytes.size());
  const std::string_view first = bytes.substr(split);
  const std::string_view second = bytes.substr(0, split);
  if (data[0] % 2 == 0) return {units(first), units(second)};
  return {{first.begin(), first.end()}, {second.begin(), second.end()}};
}

}  // namespace kr::fuzz
