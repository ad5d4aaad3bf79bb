#include "platform/KeyboardLayout.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/Child.h"
#include "tests/support/Desktop.h"

namespace kr::platform {
namespace {

using namespace std::string_view_literals;

constexpr std::uint16_t kA = 0x00, kSection = 0x0A, kE = 0x0E, kQ = 0x0C, kY = 0x10, k2 = 0x13, kEqual = 0x18;

void useLayout(const char* layout) {
  ::unsetenv("DISPLAY");
  ::setenv("XKB_DEFAULT_LAYOUT", layout, 1);
}

TEST(KeyboardLayout, KeysHaveTheTextOfTheLayout) {
  useLayout("us");
  EXPECT_EQ(textOfKey(kA, 0), u"a");
  EXPECT_EQ(textOfKey(kY, 0), u"y");
  EXPECT_EQ(textOfKey(0x31, 0), u" ");
  useLayout("de");
  EXPECT_EQ(textOfKey(kY, 0), u"z");
  EXPECT_EQ(textOfKey(0x29, 0), u"ö");
  EXPECT_EQ(textOfKey(kSection, 0), u"<");
  useLayout("ru");
  EXPECT_EQ(textOfKey(kA, kShiftKey), u"Ф");
}

TEST(KeyboardLayout, ModifiersCount) {
  useLayout("de");
  EXPECT_EQ(textOfKey(kA, kShiftKey), u"A");
  EXPECT_EQ(textOfKey(kA, kCapsLockKey), u"A");
  EXPECT_EQ(textOfKey(k2, kShiftKey), u"\"");
  EXPECT_EQ(textOfKey(k2, kCapsLockKey), u"2") << "only letters are locked";
  EXPECT_EQ(textOfKey(kQ, kOptionKey), u"@");
  EXPECT_EQ(textOfKey(kE, kOptionKey), u"€");
  EXPECT_EQ(textOfKey(kA, kControlKey), u"\x01");
  EXPECT_EQ(textOfKey(kA, kCommandKey), u"a");
}

TEST(KeyboardLayout, IsThatOfTheXServerWhereThereIsOne) {
  useLayout("ru");
  const kr::testing::Desktop desktop;
  EXPECT_EQ(textOfKey(kY, 0), u"y");
  kr::testing::Child change({"setxkbmap", "fr"});
  ASSERT_EQ(change.wait(10), 0);
  EXPECT_EQ(textOfKey(kA, 0), u"q");
  EXPECT_EQ(textOfKey(k2, kShiftKey), u"2");
  EXPECT_EQ(textOfKey(kE, kOptionKey), u"€");
}

TEST(KeyboardLayout, ADeadKeyHasItsAccent) {
  useLayout("de");
  EXPECT_EQ(textOfKey(kEqual, 0), u"´");
  EXPECT_EQ(textOfKey(kEqual, kShiftKey), u"`");
}

TEST(KeyboardLayout, EveryKeyStandsAtItsPlace) {
  useLayout("us");
  const std::u16string_view keys = u"asdfhgzxcv\0bqweryt123465=97-80]ou[ip\rlj'k;\\,/nm.\t `\x08"sv;
  for (std::size_t code = 0; code < keys.size(); ++code) {
    if (keys[code] == 0) continue;
    EXPECT_EQ(textOfKey(static_cast<std::uint16_t>(code), 0), std::u16string(1, keys[code])) << code;
  }
  const std::u16string_view keypad =
      u".\0*\0+\0\x1B\0\0\0/\x03\0-\0\0=01234567\x10"
      u"89"sv;
  for (std::size_t index = 0; index < keypad.size(); ++index) {
    if (keypad[index] == 0) continue;
    EXPECT_EQ(textOfKey(static_cast<std::uint16_t>(0x41 + index), 0), std::u16string(1, keypad[index]))
        << index;
  }
}

TEST(KeyboardLayout, KeysWithoutALayoutHaveTheCharactersOfTheMac) {
  EXPECT_EQ(textOfKey(0x24, 0), u"\r");
  EXPECT_EQ(textOfKey(0x35, 0), u"\x1B");
  EXPECT_EQ(textOfKey(0x4C, 0), u"\x03");
  EXPECT_EQ(textOfKey(0x7B, 0), u"\x1C");
  EXPECT_EQ(textOfKey(0x7E, 0), u"\x1E");
  EXPECT_EQ(textOfKey(0x7A, 0), u"\x10");
  EXPECT_EQ(textOfKey(0x38, 0), u"") << "the shift key";
}

TEST(KeyboardLayout, ThereIsNoKeyBeyondTheLast) {
  EXPECT_EQ(textOfKey(0x80, 0), std::nullopt);
  EXPECT_EQ(textOfKey(0xFFFF, 0), std::nullopt);
}

TEST(KeyboardLayout, AnUnknownLayoutCannotBeTold) {
  useLayout("no-such-layout");
  EXPECT_EQ(textOfKey(kA, 0), std::nullopt);
  EXPECT_EQ(textOfKey(0x24, 0), u"\r");
}

}  // namespace
}  // namespace kr::platform
