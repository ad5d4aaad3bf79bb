#include "platform/UTF8Bytes.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

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

// Whether a character of two, three or four bytes starts at `bytes`. None has a shorter form, is a surrogate,
// or lies beyond the last one: the second byte has fewer values where more would mean that.
inline bool startsTwo(const Byte* bytes, std::size_t available) {
  return isBetween(bytes[0], 0xC2, 0xDF) && available >= 2 && follows(bytes[1]);
}
inline bool startsThree(const Byte* bytes, std::size_t available) {
  const Byte lead = bytes[0];
  if (!isBetween(lead, 0xE0, 0xEF) || available < 3 || !follows(bytes[1]) || !follows(bytes[2])) return false;
  return (lead != 0xE0 || bytes[1] >= 0xA0) && (lead != 0xED || bytes[1] <= 0x9F);
}
inline bool startsFour(const Byte* bytes, std::size_t available) {
  const Byte lead = bytes[0];
  if (!isBetween(lead, 0xF0, 0xF4) || available < 4) return false;
  if (!follows(bytes[1]) || !follows(bytes[2]) || !follows(bytes[3])) return false;
  return (lead != 0xF0 || bytes[1] >= 0x90) && (lead != 0xF4 || bytes[1] <= 0x8F);
}

// ASCII goes through in steps of as many characters.
constexpr std::size_t kStep = 8;

// Copies the ASCII of a step, and whatever follows in it, without a branch for how much it is, which nobody
// can foresee. Answers how much it is.
inline std::size_t copyASCIIStep(const Byte* from, char16_t* to) {
  static_assert(std::endian::native == std::endian::little);
  std::uint64_t word = 0;
  std::memcpy(&word, from, sizeof word);
  for (std::size_t index = 0; index < kStep; ++index) to[index] = from[index];
  const std::uint64_t outside = word & 0x8080808080808080;
  return outside == 0 ? kStep : static_cast<std::size_t>(std::countr_zero(outside)) / 8;
}
inline std::size_t copyASCIIStep(const char16_t* from, char* to) {
  std::array<std::uint64_t, 2> words{};
  std::memcpy(words.data(), from, sizeof words);
  for (std::size_t index = 0; index < kStep; ++index) to[index] = static_cast<char>(from[index]);
  constexpr std::uint64_t kOutside = 0xFF80FF80FF80FF80;
  const std::uint64_t first = words[0] & kOutside;
  const std::uint64_t second = words[1] & kOutside;
  if ((first | second) == 0) return kStep;
  return static_cast<std::size_t>(first != 0 ? std::countr_zero(first) : 64 + std::countr_zero(second)) / 16;
}

// Copies the ASCII that `from` begins with; answers how much that is. Where there is room for a whole step,
// one may be written behind it.
template <class From, class To>
std::size_t copyASCII(const From* from, std::size_t length, To* to) {
  std::size_t at = 0;
  for (; at + kStep <= length; at += kStep) {
    const std::size_t copied = copyASCIIStep(from + at, to + at);
    if (copied < kStep) return at + copied;
  }
  while (at < length && from[at] < 0x80) {
    to[at] = static_cast<To>(from[at]);
    ++at;
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

// What the units take at most: no surrogate is counted as half of a pair.
std::size_t mostBytes(std::u16string_view units) {
  std::size_t bytes = units.size();
  // In blocks whose count fits the width of a unit, so that the loop runs on many units at once.
  constexpr std::size_t kBlock = 1 << 14;
  for (; !units.empty(); units.remove_prefix(std::min(kBlock, units.size()))) {
    std::uint16_t more = 0;
    for (const char16_t unit : units.substr(0, kBlock)) {
      more = static_cast<std::uint16_t>(more + (unit >= 0x80 ? 1 : 0) + (unit >= 0x800 ? 1 : 0));
    }
    bytes += more;
  }
  return bytes;
}

// Units that are encoded at once, and the most bytes that one of them takes.
constexpr std::size_t kPart = 4096;
constexpr std::size_t kMostBytes = 3;

// Writes the bytes of the units; answers how many.
std::size_t encode(std::u16string_view units, char* bytes) {
  char* end = bytes;
  for (std::size_t at = 0; at < units.size();) {
    const std::size_t copied = copyASCII(units.data() + at, units.size() - at, end);
    end += copied;
    at += copied;
    for (; at < units.size() && units[at] >= 0x80; ++at) {
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

// Decodes all of the bytes into `room`, which has as many units; answers how many it took. Where they are not
// UTF-8 it asks for what stands in a byte's place; 0 ends it, and the answer is then none.
template <class Replacement>
std::optional<std::size_t> decodeAll(std::string_view text, char16_t* room, Replacement replacement) {
  char16_t* end = room;
  const auto* const bytes = reinterpret_cast<const Byte*>(text.data());
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t copied = copyASCII(bytes + at, text.size() - at, end);
    end += copied;
    at += copied;
    while (at < text.size() && bytes[at] >= 0x80) {
      const Byte* const here = bytes + at;
      const std::size_t available = text.size() - at;
      if (startsThree(here, available)) {
        *end++ = static_cast<char16_t>((here[0] & 0xFU) << 12U | six(here[1]) << 6U | six(here[2]));
        at += 3;
      } else if (startsTwo(here, available)) {
        *end++ = static_cast<char16_t>((here[0] & 0x1FU) << 6U | six(here[1]));
        at += 2;
      } else if (startsFour(here, available)) {
        const char32_t point =
            (here[0] & 0x7U) << 18U | six(here[1]) << 12U | six(here[2]) << 6U | six(here[3]);
        *end++ = static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
        *end++ = static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
        at += 4;
      } else {
        const char16_t unit = replacement(here[0]);
        if (unit == 0) return std::nullopt;
        *end++ = unit;
        ++at;
      }
    }
  }
  return static_cast<std::size_t>(end - room);
}

}  // namespace

std::u16string utf16FromBytes(std::string_view bytes) {
  std::u16string units(bytes.size(), u'\0');
  units.resize(
      *decodeAll(bytes, units.data(), [](Byte byte) { return static_cast<char16_t>(kByteEscape + byte); }));
  return units;
}

std::optional<std::size_t> decodeUTF8(std::string_view bytes, char16_t* room) {
  return decodeAll(bytes, room, [](Byte) { return u'\0'; });
}

std::optional<std::u16string> utf16FromUTF8(std::string_view bytes) {
  std::u16string units(bytes.size(), u'\0');
  const std::optional<std::size_t> length = decodeUTF8(bytes, units.data());
  if (!length) return std::nullopt;
  units.resize(*length);
  return units;
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
  std::string bytes(mostBytes(units), '\0');
  bytes.resize(encode(units, bytes.data()));
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
