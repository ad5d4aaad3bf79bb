#include "platform/UTF8Bytes.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <type_traits>

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

// ASCII goes through in blocks, which the compiler turns into code for many characters at once.
constexpr std::size_t kBlock = 32;

// Copies blocks of ASCII for as long as there are any; answers their length.
template <class From, class To>
std::size_t copyASCIIBlocks(const From* from, std::size_t length, To* to) {
  std::size_t at = 0;
  for (; at + kBlock <= length; at += kBlock) {
    unsigned all = 0;
    for (std::size_t index = at; index < at + kBlock; ++index) all |= std::make_unsigned_t<From>(from[index]);
    if (all >= 0x80) break;
    for (std::size_t index = at; index < at + kBlock; ++index) to[index] = static_cast<To>(from[index]);
  }
  return at;
}

char* append(char* end, char32_t point) {
  if (point < 0x80) {
    *end++ = static_cast<char>(point);
    return end;
  }
  const int following = point < 0x800 ? 1 : point < 0x10000 ? 2 : 3;
  *end++ =
      static_cast<char>(kLeadBytes[static_cast<std::size_t>(following) - 1].value | point >> (6 * following));
  for (int shift = 6 * (following - 1); shift >= 0; shift -= 6) {
    *end++ = static_cast<char>(0x80 | (point >> shift & 0x3F));
  }
  return end;
}

// Units that are encoded at once, and the most bytes that one of them takes.
constexpr std::size_t kPart = 4096;
constexpr std::size_t kMostBytes = 3;

// Writes the bytes of the units; answers how many.
std::size_t encode(std::u16string_view units, char* bytes) {
  char* end = bytes;
  for (std::size_t at = 0; at < units.size();) {
    const std::size_t copied = copyASCIIBlocks(units.data() + at, units.size() - at, end);
    end += copied;
    at += copied;
    for (const std::size_t stop = std::min(at + kBlock, units.size()); at < stop; ++at) {
      const char16_t unit = units[at];
      if (isHigh(unit) && at + 1 < units.size() && isLow(units[at + 1])) {
        end = append(end, 0x10000 + (static_cast<char32_t>(unit - 0xD800) << 10) + (units[at + 1] - 0xDC00U));
        ++at;
      } else if (unit >= kByteEscape + 0x80 && unit <= kByteEscape + 0xFF) {
        *end++ = static_cast<char>(unit - kByteEscape);
      } else {
        end = append(end, isSurrogate(unit) ? kReplacement : unit);
      }
    }
  }
  return static_cast<std::size_t>(end - bytes);
}

// Decodes all of the bytes. Where they are not UTF-8 it asks for what stands in a byte's place; 0 ends it,
// and the answer is then none.
template <class Replacement>
std::optional<std::u16string> decodeAll(std::string_view bytes, Replacement replacement) {
  std::u16string units(bytes.size(), u'\0');
  char16_t* end = units.data();
  while (!bytes.empty()) {
    const std::size_t copied = copyASCIIBlocks(bytes.data(), bytes.size(), end);
    end += copied;
    bytes.remove_prefix(copied);
    // Outside ASCII, or at the end: as many characters one by one as a block has bytes.
    for (std::size_t count = 0; count < kBlock && !bytes.empty(); ++count) {
      char32_t point = 0;
      const std::size_t length = decode(bytes, point);
      if (length == 0) {
        const char16_t unit = replacement(static_cast<std::uint8_t>(bytes.front()));
        if (unit == 0) return std::nullopt;
        *end++ = unit;
      } else if (point < 0x10000) {
        *end++ = static_cast<char16_t>(point);
      } else {
        *end++ = static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
        *end++ = static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
      }
      bytes.remove_prefix(length == 0 ? 1 : length);
    }
  }
  units.resize(static_cast<std::size_t>(end - units.data()));
  return units;
}

}  // namespace

std::u16string utf16FromBytes(std::string_view bytes) {
  return *decodeAll(bytes, [](std::uint8_t byte) { return static_cast<char16_t>(kByteEscape + byte); });
}

std::optional<std::u16string> utf16FromUTF8(std::string_view bytes) {
  return decodeAll(bytes, [](std::uint8_t) { return u'\0'; });
}

void forEachUTF8Part(std::u16string_view units, const std::function<void(std::string_view)>& call) {
  std::array<char, kPart * kMostBytes> part{};
  while (!units.empty()) {
    // A pair is not taken apart.
    std::size_t length = std::min(kPart, units.size());
    if (length < units.size() && isHigh(units[length - 1]) && isLow(units[length])) --length;
    call({part.data(), encode(units.substr(0, length), part.data())});
    units.remove_prefix(length);
  }
}

std::string bytesFromUTF16(std::u16string_view units) {
  std::string bytes;
  bytes.reserve(units.size());
  forEachUTF8Part(units, [&bytes](std::string_view part) { bytes += part; });
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
