#include "library/text/HTMLEncoding.h"

#include <algorithm>
#include <optional>

#include "library/text/Decoding.h"
#include "platform/CharacterSets.h"
#include "platform/Log.h"

namespace kr {
namespace {

constexpr std::string_view kHTML = "html";
constexpr std::string_view kMeta = "<meta";
constexpr std::string_view kCharset = "charset";
constexpr std::string_view kNoHTMLInLatin = "no HTML in Latin";
constexpr std::string_view kNoHTMLInUnicode = "no HTML in Unicode";

template <class Unit>
constexpr Unit lowerCase(Unit unit) {
  return unit >= 'A' && unit <= 'Z' ? static_cast<Unit>(unit + ('a' - 'A')) : unit;
}

// The first place at or after `from` of the lower-case word, in any case; npos when there is none.
template <class Text>
std::size_t findWord(Text text, std::string_view word, std::size_t from = 0) {
  const auto start = text.begin() + static_cast<std::ptrdiff_t>(std::min(from, text.size()));
  const auto found = std::search(start, text.end(), word.begin(), word.end(), [](auto unit, char letter) {
    return lowerCase(unit) == static_cast<decltype(unit)>(letter);
  });
  return found == text.end() ? Text::npos : static_cast<std::size_t>(found - text.begin());
}

constexpr bool belongsToName(char byte) {
  const char letter = lowerCase(byte);
  return (letter >= 'a' && letter <= 'z') || (byte >= '0' && byte <= '9') || byte == '-';
}

// The name behind the word "charset" at the start of the bytes; empty without one.
std::string_view characterSetName(std::string_view bytes) {
  bytes.remove_prefix(kCharset.size());
  const auto* const start = std::find_if_not(bytes.begin(), bytes.end(), [](char byte) {
    return static_cast<unsigned char>(byte) < 33 || byte == '=';
  });
  const auto* const end = std::find_if_not(start, bytes.end(), belongsToName);
  return {start, static_cast<std::size_t>(end - start)};
}

bool isLatin1(std::string_view standardName) {
  std::string name(standardName);
  std::transform(name.begin(), name.end(), name.begin(), lowerCase<char>);
  return name == "iso-8859-1" || name == "iso_8859-1:1987";
}

// The text in the character set that the document names; none where that is to be Latin-1.
std::optional<std::u16string> decodedAsNamed(std::string_view bytes) {
  const std::size_t meta = findWord(bytes, kMeta);
  if (meta == std::string_view::npos) return std::nullopt;
  const std::size_t charset = findWord(bytes, kCharset, meta);
  if (charset == std::string_view::npos) return std::nullopt;
  const std::optional<std::string> name =
      platform::characterSetNamed(characterSetName(bytes.substr(charset)));
  if (!name || isLatin1(*name)) return std::nullopt;
  return platform::decodedFrom(*name, bytes);
}

}  // namespace

std::u16string decodedHTML(std::string_view bytes) {
  // A byte of Latin-1 is its character, so the bytes can be searched as they are.
  if (findWord(bytes, kHTML) == std::string_view::npos) {
    log(kNoHTMLInLatin);
    std::u16string unicode = decodedUTF16(bytes);
    if (findWord(std::u16string_view(unicode), kHTML) != std::u16string_view::npos) return unicode;
    log(kNoHTMLInUnicode);
    return decodedLatin1(bytes);
  }
  const std::optional<std::u16string> text = decodedAsNamed(bytes);
  return text ? *text : decodedLatin1(bytes);
}

}  // namespace kr
