#include "platform/linux/HTMLReferences.h"

#include <libxml/HTMLparser.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <unordered_map>

namespace kr::platform {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

// What numbers from 0x80 to 0x9F stand for: the characters of Windows-1252, or themselves where it has none.
constexpr std::array<char16_t, 32> kWindowsCharacters{
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

// Names that may also be written in capitals.
constexpr std::array<std::string_view, 6> kNamesInCapitals{"AMP", "LT", "GT", "QUOT", "COPY", "REG"};

constexpr bool isDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}
constexpr bool isLetter(char16_t unit) {
  return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

// -1 for what is no digit of the base.
constexpr int digitValue(char16_t unit, int base) {
  if (isDigit(unit)) return unit - u'0';
  const char16_t lower = unit | 0x20;
  return base == 16 && lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

// A reference at the start of a text: how many units of it are replaced, and by what.
struct Reference {
  std::size_t length = 0;
  std::u16string replacement;
};

// The text starts with "&#". Only numbers that the parser would read otherwise are replaced.
Reference numericReference(std::u16string_view text) {
  const bool isHexadecimal = text.size() > 2 && (text[2] | 0x20) == u'x';
  const int base = isHexadecimal ? 16 : 10;
  std::size_t at = isHexadecimal ? 3 : 2;
  const std::size_t digits = at;
  std::uint32_t value = 0;
  for (int digit; at < text.size() && (digit = digitValue(text[at], base)) >= 0; ++at) {
    value = std::min<std::uint32_t>(
        value * static_cast<std::uint32_t>(base) + static_cast<std::uint32_t>(digit), 0x110000);
  }
  if (at == digits) return {};
  if (at < text.size() && text[at] == u';') ++at;
  if (value >= 0x80 && value < 0x80 + kWindowsCharacters.size()) {
    return {at, std::u16string(1, kWindowsCharacters[value - 0x80])};
  }
  const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
  if (value == 0 || value > 0x10FFFF || isSurrogate) return {at, std::u16string(1, kReplacement)};
  return {};
}

// The names that the parser knows, and the code points that they stand for.
const std::unordered_map<std::string, unsigned>& knownNames() {
  static const std::unordered_map<std::string, unsigned> names = [] {
    constexpr unsigned kLast = 0x2FFF;  // all of them stand for letters and symbols below
    std::unordered_map<std::string, unsigned> found;
    for (unsigned value = 0; value <= kLast; ++value) {
      if (const htmlEntityDesc* entity = ::htmlEntityValueLookup(value)) found.emplace(entity->name, value);
    }
    return found;
  }();
  return names;
}

// Whether the name may stand without a semicolon: those of the first characters, which are the oldest.
bool needsNoSemicolon(const std::string& name) {
  constexpr unsigned kLast = 0xFF;
  const auto found = knownNames().find(name);
  return found != knownNames().end() && found->second <= kLast && name != "apos";
}

std::string inLowerCase(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char letter) { return static_cast<char>(letter | 0x20); });
  return name;
}

// The text starts with "&" and a letter.
Reference namedReference(std::u16string_view text) {
  constexpr std::size_t kLongestName = 8;
  std::string name;
  for (std::size_t at = 1;
       at < text.size() && at <= kLongestName && (isLetter(text[at]) || isDigit(text[at])); ++at) {
    name += static_cast<char>(text[at]);
  }
  const auto isEnded = [&](std::size_t end) { return end < text.size() && text[end] == u';'; };
  if (isEnded(1 + name.size()) && knownNames().contains(name)) return {};
  // The longest beginning that is a name counts.
  for (; !name.empty(); name.pop_back()) {
    const bool isInCapitals =
        std::find(kNamesInCapitals.begin(), kNamesInCapitals.end(), name) != kNamesInCapitals.end();
    const std::string plain = isInCapitals ? inLowerCase(name) : name;
    if (!needsNoSemicolon(plain)) continue;
    const std::size_t end = 1 + name.size();
    std::u16string replacement = u"&";
    replacement.append(plain.begin(), plain.end());
    return {end + (isEnded(end) ? 1 : 0), replacement + u';'};
  }
  return {};
}

}  // namespace

std::u16string withPlainReferences(std::u16string_view html) {
  std::u16string result;
  result.reserve(html.size());
  for (;;) {
    const std::size_t ampersand = html.find(u'&');
    result += html.substr(0, ampersand);
    if (ampersand == std::u16string_view::npos) return result;
    html.remove_prefix(ampersand);
    Reference reference;
    if (html.size() > 1 && html[1] == u'#') reference = numericReference(html);
    if (html.size() > 1 && isLetter(html[1])) reference = namedReference(html);
    if (reference.length == 0) reference = {1, u"&"};
    result += reference.replacement;
    html.remove_prefix(reference.length);
  }
}

}  // namespace kr::platform
