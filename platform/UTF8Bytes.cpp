#include "platform/UTF8Bytes.h"

#include <array>
#include <cstdint>

namespace kr::platform {
namespace {

constexpr char16_t kByteEscape = 0xDC00;
constexpr char32_t kReplacement = 0xFFFD;

struct LeadByte {
  std::uint8_t mask, value;
  int following;
  char32_t lowest;  // a shorter form exists for anything below
};
constexpr std::array<LeadByte, 3> kLeadBytes{
    {{0xE0, 0xC0, 1, 0x80}, {0xF0, 0xE0, 2, 0x800}, {0xF8, 0xF0, 3, 0x10000}}};

bool isSurrogate(char32_t point) {
  return point >= 0xD800 && point <= 0xDFFF;
}
bool isHigh(char16_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLow(char16_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

// Decodes the character that starts at `bytes`; its length in bytes, 0 when it is not valid UTF-8.
std::size_t decode(std::string_view bytes, char32_t& point) {
  const auto lead = static_cast<std::uint8_t>(bytes.front());
  if (lead < 0x80) {
    point = lead;
    return 1;
  }
  for (const LeadByte& form : kLeadBytes) {
    if ((lead & form.mask) != form.value) continue;
    const auto length = static_cast<std::size_t>(form.following) + 1;
    if (bytes.size() < length) return 0;
    point = lead & static_cast<std::uint8_t>(~form.mask);
    for (std::size_t at = 1; at < length; ++at) {
      const auto next = static_cast<std::uint8_t>(bytes[at]);
      if ((next & 0xC0) != 0x80) return 0;
      point = point << 6 | (next & 0x3F);
    }
    return point < form.lowest || point > 0x10FFFF || isSurrogate(point) ? 0 : length;
  }
  return 0;
}

void append(std::string& bytes, char32_t point) {
  if (point < 0x80) {
    bytes += static_cast<char>(point);
    return;
  }
  const int following = point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
  bytes +=
      static_cast<char>(kLeadBytes[static_cast<std::size_t>(following) - 1].value | point >> (6 * following));
  for (int shift = 6 * (following - 1); shift >= 0; shift -= 6) {
    bytes += static_cast<char>(0x80 | (point >> shift & 0x3F));
  }
}

}  // namespace

std::u16string utf16FromBytes(std::string_view bytes) {
  std::u16string units;
  units.reserve(bytes.size());
  while (!bytes.empty()) {
    char32_t point = 0;
    const std::size_t length = decode(bytes, point);
    if (length == 0) {
      units += static_cast<char16_t>(kByteEscape + static_cast<std::uint8_t>(bytes.front()));
    } else if (point < 0x10000) {
      units += static_cast<char16_t>(point);
    } else {
      units += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
      units += static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
    }
    bytes.remove_prefix(length == 0 ? 1 : length);
  }
  return units;
}

std::string bytesFromUTF16(std::u16string_view units) {
  std::string bytes;
  bytes.reserve(units.size());
  for (std::size_t at = 0; at < units.size(); ++at) {
    const char16_t unit = units[at];
    if (isHigh(unit) && at + 1 < units.size() && isLow(units[at + 1])) {
      append(bytes, 0x10000 + (static_cast<char32_t>(unit - 0xD800) << 10) + (units[at + 1] - 0xDC00U));
      ++at;
    } else if (unit >= kByteEscape + 0x80 && unit <= kByteEscape + 0xFF) {
      bytes += static_cast<char>(unit - kByteEscape);
    } else {
      append(bytes, isSurrogate(unit) ? kReplacement : unit);
    }
  }
  return bytes;
}

std::u16string withoutLoneSurrogates(std::u16string_view units) {
  std::u16string text(units);
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (isHigh(text[at]) && at + 1 < text.size() && isLow(text[at + 1])) {
      ++at;
    } else if (isSurrogate(text[at])) {
      text[at] = static_cast<char16_t>(kReplacement);
    }
  }
  return text;
}

}  // namespace kr::platform
