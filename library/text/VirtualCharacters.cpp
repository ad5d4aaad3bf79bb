#include "library/text/VirtualCharacters.h"

#include <utility>

#include "library/text/CodePoints.h"

namespace kr {
namespace {

constexpr char32_t kFirstFlag = 0xA0000;
constexpr char32_t kLetters = 26;
constexpr char32_t kFirstJoined = 0xA0300;
constexpr char32_t kFirstKeycap = 0xA1000;
constexpr char32_t kFirstLigature = 0xB0000;
constexpr char32_t kLastLigature = 0xBFFFE;

constexpr std::uint32_t kRegionalIndicatorA = 0x1F1E6;
constexpr std::uint32_t kKeycap = 0x20E3;

// Whether the value is one of `count` from `first` on.
constexpr bool isOneOf(char32_t value, char32_t first, std::size_t count) {
  return value >= first && value - first < count;
}

constexpr bool isFlag(char32_t value) {
  return isOneOf(value, kFirstFlag, kLetters * kLetters);
}

std::vector<std::u16string>& definedLigatures() {
  static std::vector<std::u16string> ligatures;
  return ligatures;
}

}  // namespace

const std::array<KeycapRow, N_KEYCAP_SEQUENCES> KEYCAP_SEQUENCES{{{u'#', kKeycap},
                                                                  {u'*', kKeycap},
                                                                  {u'0', kKeycap},
                                                                  {u'1', kKeycap},
                                                                  {u'2', kKeycap},
                                                                  {u'3', kKeycap},
                                                                  {u'4', kKeycap},
                                                                  {u'5', kKeycap},
                                                                  {u'6', kKeycap},
                                                                  {u'7', kKeycap},
                                                                  {u'8', kKeycap},
                                                                  {u'9', kKeycap}}};

bool isVirtualCharacter(char32_t value) {
  return isFlag(value) || isOneOf(value, kFirstJoined, N_ZWJ_SEQUENCES) ||
         isOneOf(value, kFirstKeycap, N_KEYCAP_SEQUENCES) ||
         (value >= kFirstLigature && value <= kLastLigature);
}

const std::uint32_t* codePointsOfVirtualCharacter(char32_t value) {
  if (isFlag(value)) {
    static std::array<std::uint32_t, 3> flag{};
    const char32_t letters = value - kFirstFlag;
    flag = {kRegionalIndicatorA + letters / kLetters, kRegionalIndicatorA + letters % kLetters, 0};
    return flag.data();
  }
  if (isOneOf(value, kFirstJoined, N_ZWJ_SEQUENCES)) return ZWJ_SEQUENCES[value - kFirstJoined].data();
  if (isOneOf(value, kFirstKeycap, N_KEYCAP_SEQUENCES)) return KEYCAP_SEQUENCES[value - kFirstKeycap].data();
  return nullptr;
}

void defineLigatures(std::vector<std::u16string> ligatures) {
  definedLigatures() = std::move(ligatures);
}

std::u16string textOfCharacter(char32_t value) {
  if (const std::uint32_t* sequence = codePointsOfVirtualCharacter(value)) return textOfSequence(sequence);
  const std::vector<std::u16string>& ligatures = definedLigatures();
  if (isOneOf(value, kFirstLigature, ligatures.size())) return ligatures[value - kFirstLigature];
  std::u16string text;
  appendCodePoint(text, value);
  return text;
}

std::u16string textOfSequence(const std::uint32_t* codePoints) {
  std::u16string text;
  for (; *codePoints != 0; ++codePoints) appendCodePoint(text, *codePoints);
  return text;
}

}  // namespace kr
