#include "library/utilities/PackedText.h"

#include <gtest/gtest.h>

namespace kr {
namespace {

TEST(UnpackedText, HasFiveBitsACharacterTheLowestFirst) {
  EXPECT_EQ(unpackedText(1), "a");
  EXPECT_EQ(unpackedText(26), "z");
  EXPECT_EQ(unpackedText(14 | 9 << 5 | 2 << 10), "nib");
}

TEST(UnpackedText, EndsWhereNothingIsLeft) {
  EXPECT_EQ(unpackedText(0), "");
  EXPECT_EQ(unpackedText(0 | 1 << 5), "`a") << "a group of 0 is a character as long as more follow";
  EXPECT_EQ(unpackedText(0xFFFFFFFF),
            "\x7F\x7F\x7F\x7F\x7F\x7F"
            "c")
      << "six groups and two bits";
}

}  // namespace
}  // namespace kr
