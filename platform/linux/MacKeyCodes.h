// The virtual key codes of the Mac, which name places on the keyboard, on this system.
#pragma once

#include <array>
#include <cstdint>

namespace kr::platform {

// What the code stands for here: a key of the kernel's, or a character that no layout changes. Both are 0 for
// a key without text.
struct MacKey {
  std::uint8_t evdevCode = 0;
  char16_t character = 0;
};

inline constexpr std::size_t kMacKeys = 0x80;

// By key code.
[[nodiscard]] constexpr std::array<MacKey, kMacKeys> macKeys() {
  std::array<MacKey, kMacKeys> keys{};
  // Rows of the keyboard: for each code the kernel's.
  constexpr std::array<std::array<std::uint8_t, 2>, 68> kKeys{
      {{0x00, 30}, {0x01, 31},  {0x02, 32}, {0x03, 33}, {0x04, 35}, {0x05, 34}, {0x06, 44},  {0x07, 45},
       {0x08, 46}, {0x09, 47},  {0x0A, 86}, {0x0B, 48}, {0x0C, 16}, {0x0D, 17}, {0x0E, 18},  {0x0F, 19},
       {0x10, 21}, {0x11, 20},  {0x12, 2},  {0x13, 3},  {0x14, 4},  {0x15, 5},  {0x16, 7},   {0x17, 6},
       {0x18, 13}, {0x19, 10},  {0x1A, 8},  {0x1B, 12}, {0x1C, 9},  {0x1D, 11}, {0x1E, 27},  {0x1F, 24},
       {0x20, 22}, {0x21, 26},  {0x22, 23}, {0x23, 25}, {0x25, 38}, {0x26, 36}, {0x27, 40},  {0x28, 37},
       {0x29, 39}, {0x2A, 43},  {0x2B, 51}, {0x2C, 53}, {0x2D, 49}, {0x2E, 50}, {0x2F, 52},  {0x31, 57},
       {0x32, 41}, {0x41, 83},  {0x43, 55}, {0x45, 78}, {0x4B, 98}, {0x4E, 74}, {0x51, 117}, {0x52, 82},
       {0x53, 79}, {0x54, 80},  {0x55, 81}, {0x56, 75}, {0x57, 76}, {0x58, 77}, {0x59, 71},  {0x5B, 72},
       {0x5C, 73}, {0x5D, 124}, {0x5E, 89}, {0x5F, 121}}};
  for (const auto& [code, evdevCode] : kKeys) keys[code].evdevCode = evdevCode;

  // Return, tab, delete, escape, clear, enter, help, home, page up, forward delete, end, page down, arrows.
  constexpr std::array<std::array<std::uint8_t, 2>, 16> kCharacters{{{0x24, 0x0D},
                                                                     {0x30, 0x09},
                                                                     {0x33, 0x08},
                                                                     {0x35, 0x1B},
                                                                     {0x47, 0x1B},
                                                                     {0x4C, 0x03},
                                                                     {0x72, 0x05},
                                                                     {0x73, 0x01},
                                                                     {0x74, 0x0B},
                                                                     {0x75, 0x7F},
                                                                     {0x77, 0x04},
                                                                     {0x79, 0x0C},
                                                                     {0x7B, 0x1C},
                                                                     {0x7C, 0x1D},
                                                                     {0x7D, 0x1F},
                                                                     {0x7E, 0x1E}}};
  for (const auto& [code, character] : kCharacters) keys[code].character = character;

  constexpr char16_t kFunctionKey = 0x10;
  for (const unsigned code : {0x7AU, 0x78U, 0x63U, 0x76U, 0x60U, 0x61U, 0x62U, 0x64U, 0x65U, 0x6DU,
                              0x67U, 0x6FU, 0x69U, 0x6BU, 0x71U, 0x6AU, 0x40U, 0x4FU, 0x50U, 0x5AU}) {
    keys[code].character = kFunctionKey;
  }
  return keys;
}

}  // namespace kr::platform
