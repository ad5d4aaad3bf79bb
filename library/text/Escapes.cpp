#include "library/text/Escapes.h"

#include <array>
#include <utility>
#include <vector>

#include "library/text/CodePoints.h"
#include "library/text/LiteralSearch.h"

namespace kr {
namespace {

constexpr char16_t kBackslash = u'\\';

// Control characters and the letters that stand for them after a backslash.
struct ControlEscape {
  char16_t character, letter;
};
constexpr std::array<ControlEscape, 3> kControlEscapes{{{u'\t', u't'}, {u'\r', u'r'}, {u'\n', u'n'}}};

constexpr char32_t letterFor(char32_t character) {
  for (const ControlEscape& escape : kControlEscapes) {
    if (escape.character == character) return escape.letter;
  }
  return character;
}

// The control character of an escape; 0 when the letter stands for none.
constexpr char16_t controlCharacterFor(char16_t letter) {
  for (const ControlEscape& escape : kControlEscapes) {
    if (escape.letter == letter) return escape.character;
  }
  return 0;
}

// A set of characters that is asked for every character of a text.
class Characters {
 public:
  explicit Characters(std::u16string_view members) {
    for (std::size_t index = 0; index < members.size(); ++index) {
      add(codePointAt(members, index));
      if (startsWithPair(members.substr(index))) ++index;
    }
  }

  void add(char32_t character) {
    if (character < ascii_.size()) {
      ascii_[character] = true;
    } else {
      others_ += character;
    }
  }

  [[nodiscard]] bool holds(char32_t character) const {
    return character < ascii_.size() ? ascii_[character] : others_.find(character) != std::u32string::npos;
  }

  // The first index at or after `from` where one of them begins; kNotFound when there is none.
  [[nodiscard]] std::size_t find(std::u16string_view text, std::size_t from) const {
    for (std::size_t index = from; index < text.size(); ++index) {
      if (holds(codePointAt(text, index))) return index;
      if (startsWithPair(text.substr(index))) ++index;
    }
    return kNotFound;
  }

 private:
  std::array<bool, 128> ascii_{};
  std::u32string others_;
};

}  // namespace

std::optional<std::u16string> escaped(std::u16string_view text, std::u16string_view characters) {
  const Characters wanted(characters);
  std::size_t found = wanted.find(text, 0);
  if (found == kNotFound) return std::nullopt;

  // The copy grows by one unit with every edit, at places that only increase; so its end is the text from
  // `taken` on, and the position `found` in it is `edits` places before that in the text.
  std::u16string copy;
  copy.reserve(text.size() + 16);
  std::size_t taken = 0;
  for (std::size_t edits = 0; found != kNotFound; ++edits) {
    const std::size_t place = found - edits;
    copy += text.substr(taken, place - taken);
    copy += kBackslash;
    copy += static_cast<char16_t>(letterFor(text[place]));
    taken = place + 1;
    found = wanted.find(text, found + 2);
  }
  copy += text.substr(taken);
  return copy;
}

std::optional<std::u16string> withEscapesExpanded(std::u16string_view text, std::u16string_view characters) {
  Characters letters(u"");
  for (std::size_t index = 0; index < characters.size(); ++index) {
    letters.add(letterFor(codePointAt(characters, index)));
    if (startsWithPair(characters.substr(index))) ++index;
  }
  std::optional<std::u16string> result;
  std::size_t taken = 0;
  for (std::size_t at = 0; (at = findUnit(text, kBackslash, at)) != kNotFound && at + 1 < text.size();) {
    if (!letters.holds(codePointAt(text, at + 1))) {
      ++at;
      continue;
    }
    if (!result) {
      result.emplace();
      result->reserve(text.size());
    }
    *result += text.substr(taken, at - taken);
    const char16_t control = controlCharacterFor(text[at + 1]);
    *result += control != 0 ? control : text[at + 1];
    taken = at += 2;
  }
  if (result) *result += text.substr(taken);
  return result;
}

std::optional<std::u16string> withControlEscapesExpanded(std::u16string_view text, bool includingBackslash) {
  std::optional<std::u16string> result;
  std::size_t taken = 0;
  for (std::size_t at = 0; (at = findUnit(text, kBackslash, at)) != kNotFound && at + 1 < text.size();) {
    const char16_t letter = text[at + 1];
    char16_t produced = controlCharacterFor(letter);
    if (letter == kBackslash && includingBackslash) produced = kBackslash;
    if (produced == 0) {
      at += 2;
      continue;
    }
    if (!result) {
      result.emplace();
      result->reserve(text.size());
    }
    *result += text.substr(taken, at - taken);
    *result += produced;
    taken = at += 2;
  }
  if (result) *result += text.substr(taken);
  return result;
}

std::u16string textOfObjCLiteral(std::u16string_view literal) {
  constexpr std::array<std::pair<std::u16string_view, std::u16string_view>, 5> kReplacements{
      {{u"\\\\", u"\\"}, {u"\\\"", u"\""}, {u"\\r", u"\r"}, {u"\\n", u"\n"}, {u"\\t", u"\t"}}};
  if (literal.size() < 3) return {};
  std::u16string text(literal.substr(2, literal.size() - 3));
  for (const auto& [escape, produced] : kReplacements) {
    if (std::optional<std::u16string> replaced = replacedLiterally(text, escape, produced)) {
      text = *std::move(replaced);
    }
  }
  return text;
}

}  // namespace kr
