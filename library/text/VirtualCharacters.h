// Virtual characters: 32-bit values beyond the characters in use that stand for an emoji, or another text, of
// several code points.
//
//   0xA0000 .. 0xA02A3   a flag: 26 times its first letter plus the second, both counted from "A"
//   0xA0300 .. 0xA03B4   a row of ZWJ_SEQUENCES
//   0xA1000 .. 0xA100B   a row of KEYCAP_SEQUENCES
//   0xB0000 .. 0xBFFFE   a ligature that the program has defined
//
// Define ligatures before they are used. The code points of a flag are handed out in one buffer for all
// callers: ask for them on one thread. All else: any thread.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kr {

inline constexpr std::size_t N_ZWJ_SEQUENCES = 181;
inline constexpr std::size_t N_KEYCAP_SEQUENCES = 12;

// The code points of an emoji that is joined with U+200D, ended by a zero.
using SequenceRow = std::array<std::uint32_t, 9>;
using KeycapRow = std::array<std::uint32_t, 3>;

extern const std::array<SequenceRow, N_ZWJ_SEQUENCES> ZWJ_SEQUENCES;
extern const std::array<KeycapRow, N_KEYCAP_SEQUENCES> KEYCAP_SEQUENCES;

// Whether the value lies in one of the four ranges; of the last one also where no ligature is defined.
[[nodiscard]] bool isVirtualCharacter(char32_t value);

// The code points, ended by a zero, of a flag, a joined emoji or a keycap; null for all else. Those of a flag
// stay until the next call that asks for a flag.
[[nodiscard]] const std::uint32_t* codePointsOfVirtualCharacter(char32_t value);

// Sets the ligatures, in place of those that were set before.
void defineLigatures(std::vector<std::u16string> ligatures);

// The text of a character: what a virtual character stands for, else the units of the code point.
[[nodiscard]] std::u16string textOfCharacter(char32_t value);

// The text of code points that a zero ends; empty when the first one is zero.
[[nodiscard]] std::u16string textOfSequence(const std::uint32_t* codePoints);

}  // namespace kr
