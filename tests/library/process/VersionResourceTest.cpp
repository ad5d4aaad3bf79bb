#include "library/process/VersionResource.h"

#include <gtest/gtest.h>

namespace kr {
namespace {

// Bytes in the order of the file: non-release number, stage, minor and bug-fix, major.
std::optional<std::string> version(unsigned char b0, unsigned char b1, unsigned char b2, unsigned char b3) {
  const char bytes[] = {static_cast<char>(b0), static_cast<char>(b1), static_cast<char>(b2),
                        static_cast<char>(b3)};
  return versionFromResource({bytes, sizeof bytes});
}

TEST(VersionResource, TheFourthByteIsTheMajorNumberInDecimalDigits) {
  EXPECT_EQ(version(0, 0x80, 0x20, 0x01), "1.2");
  EXPECT_EQ(version(0, 0x80, 0x20, 0x12), "12.2");
}

TEST(VersionResource, TheBugFixNumberIsLeftOutWhenItIsZero) {
  EXPECT_EQ(version(0, 0x80, 0x30, 0x02), "2.3");
  EXPECT_EQ(version(0, 0x80, 0x34, 0x02), "2.3.4");
}

TEST(VersionResource, TheStageLetterComesWithTheNonReleaseNumber) {
  EXPECT_EQ(version(4, 0x20, 0x20, 0x01), "1.2d4");
  EXPECT_EQ(version(4, 0x40, 0x20, 0x01), "1.2a4");
  EXPECT_EQ(version(4, 0x60, 0x21, 0x01), "1.2.1b4");
  EXPECT_EQ(version(4, 0x80, 0x20, 0x01), "1.24");
}

TEST(VersionResource, WithoutANonReleaseNumberThereIsNoLetter) {
  EXPECT_EQ(version(0, 0x60, 0x20, 0x01), "1.2");
}

TEST(VersionResource, TheNonReleaseNumberIsNotInDecimalDigits) {
  EXPECT_EQ(version(0x10, 0x60, 0, 1), "1.0b16");
}

TEST(VersionResource, NibblesBeyondNineCountAsTheyAre) {
  EXPECT_EQ(version(0, 0, 0xAF, 0xFF), "165.10.15");
}

TEST(VersionResource, FewerThanFourBytesAreNoVersion) {
  EXPECT_EQ(versionFromResource("abc"), std::nullopt);
  EXPECT_EQ(versionFromResource(""), std::nullopt);
}

}  // namespace
}  // namespace kr
