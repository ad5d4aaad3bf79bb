#include "platform/UTF8Bytes.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <type_traits>

namespace kr::platform {
namespace {

constexpr char16_t kByteEscape = 0xDC00;
constexpr char32_t kReplacement = 0xFFFD;

bool isSurrogate(char16_t unit) {
  return (unit & 0xF800) == 0xD800;
}
bool isHigh(char16_t unit) {
  return (unit & 0xFC00) == 0xD800;
}
bool isLow(char16_t unit) {
  return (unit & 0xFC00) == 0xDC00;
}
char32_t joined(char16_t high, char16_t low) {
  return 0x10000 + (static_cast<char32_t>(high - 0xD800) << 10) + (low - 0xDC00U);
}

using Byte = std::uint8_t;

bool isBetween(Byte byte, Byte lowest, Byte highest) {
  return byte >= lowest && byte <= highest;
}
bool follows(Byte byte) {
  return (byte & 0xC0) == 0x80;
}
char32_t six(Byte byte) {
  return byte & 0x3FU;
}

// Decodes the character outside ASCII that starts at `bytes`; its length in bytes, 0 when it is not valid
// UTF-8. The second byte has fewer values where more would mean a surrogate, a number beyond the last, or one
// that has a shorter form.
std::size_t decode(const Byte* bytes, std::size_t available, char32_t& point) {
  const Byte lead = bytes[0];
  if (isBetween(lead, 0xC2, 0xDF)) {
    if (available < 2 || !follows(bytes[1])) return 0;
    point = (lead & 0x1FU) << 6U | six(bytes[1]);
    return 2;
  }
  if (isBetween(lead, 0xE0, 0xEF)) {
    const Byte lowest = lead == 0xE0 ? 0xA0 : 0x80;
    const Byte highest = lead == 0xED ? 0x9F : 0xBF;
    if (available < 3 || !isBetween(bytes[1], lowest, highest) || !follows(bytes[2])) return 0;
    point = (lead & 0xFU) << 12U | six(bytes[1]) << 6U | six(bytes[2]);
    return 3;
  }
  if (isBetween(lead, 0xF0, 0xF4)) {
    const Byte lowest = lead == 0xF0 ? 0x90 : 0x80;
    const Byte highest = lead == 0xF4 ? 0x8F : 0xBF;
    if (available < 4 || !isBetween(bytes[1], lowest, highest) || !follows(bytes[2]) || !follows(bytes[3]))
      return 0;
    point = (lead & 0x7U) << 18U | six(bytes[1]) << 12U | six(bytes[2]) << 6U | six(bytes[3]);
    return 4;
  }
  return 0;
}

// ASCII goes through in blocks, which the compiler turns into code for many characters at once.
constexpr std::size_t kBlock = 32;

// Copies blocks of ASCII for as long as there are any; answers their length.
template <class From, class To>
std::size_t copyASCIIBlocks(const From* from, std::size_t length, To* to) {
  using Unsigned = std::make_unsigned_t<From>;
  std::size_t at = 0;
  for (; at + kBlock <= length; at += kBlock) {
    Unsigned all = 0;
    for (std::size_t index = at; index < at + kBlock; ++index) {
      all = static_cast<Unsigned>(all | static_cast<Unsigned>(from[index]));
    }
    if (all >= 0x80) break;
    for (std::size_t index = at; index < at + kBlock; ++index) to[index] = static_cast<To>(from[index]);
  }
  return at;
}

char* append(char* end, char32_t point) {
  const auto put = [&end](char32_t byte) { *end++ = static_cast<char>(byte); };
  if (point < 0x80) {
    put(point);
  } else if (point < 0x800) {
    put(0xC0U | point >> 6U);
    put(0x80U | (point & 0x3FU));
  } else if (point < 0x10000) {
    put(0xE0U | point >> 12U);
    put(0x80U | (point >> 6U & 0x3FU));
    put(0x80U | (point & 0x3FU));
  } else {
    put(0xF0U | point >> 18U);
    put(0x80U | (point >> 12U & 0x3FU));
    put(0x80U | (point >> 6U & 0x3FU));
    put(0x80U | (point & 0x3FU));
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
      if (!isSurrogate(unit)) {
        end = append(end, unit);
      } else if (isHigh(unit) && at + 1 < units.size() && isLow(units[at + 1])) {
        end = append(end, joined(unit, units[++at]));
      } else if (unit >= kByteEscape + 0x80 && unit <= kByteEscape + 0xFF) {
        *end++ = static_cast<char>(unit - kByteEscape);
      } else {
        end = append(end, kReplacement);
      }
    }
  }
  return static_cast<std::size_t>(end - bytes);
}

// Decodes all of the bytes. Where they are not UTF-8 it asks for what stands in a byte's place; 0 ends it,
// and the answer is then none.
template <class Replacement>
std::optional<std::u16string> decodeAll(std::string_view text, Replacement replacement) {
  std::u16string units(text.size(), u'\0');
  char16_t* end = units.data();
  const auto* const bytes = reinterpret_cast<const Byte*>(text.data());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t copied = copyASCIIBlocks(text.data() + at, text.size() - at, end);
    end += copied;
    at += copied;
    // Outside ASCII, or at the end: as many characters one by one as a block has bytes.
    for (std::size_t count = 0; count < kBlock && at < text.size(); ++count) {
      if (bytes[at] < 0x80) {
        *end++ = bytes[at++];
        continue;
      }
      char32_t point = 0;
      const std::size_t length = decode(bytes + at, text.size() - at, point);
      if (length == 0) {
        const char16_t unit = replacement(bytes[at++]);
        if (unit == 0) return std::nullopt;
        *end++ = unit;
        continue;
      }
      at += length;
      if (point < 0x10000) {
        *end++ = static_cast<char16_t>(point);
      } else {
        *end++ = static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
        *end++ = static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
      }
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
  std::array<char, kPart * kMostBytes> part;  // NOLINT: written before it is read
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
