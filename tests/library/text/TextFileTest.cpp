#include "library/text/TextFile.h"

#include <gtest/gtest.h>

#include <cmath>

#include "library/text/Decoding.h"
#include "library/text/Plausibility.h"
#include "tests/support/ScratchFolder.h"

namespace kr {
namespace {

using namespace std::string_literals;

TEST(Plausibility, CountsGoodAndBadUnits) {
  EXPECT_FLOAT_EQ(plausibility(u"abc"), 1);
  EXPECT_FLOAT_EQ(plausibility(u"a\t\n\r b"), 1);
  EXPECT_FLOAT_EQ(plausibility(u"é日٣\u0301"), 1) << "letters, digits and marks of any script";
  EXPECT_FLOAT_EQ(plausibility(u"a.b."), 0.5);
  EXPECT_FLOAT_EQ(plausibility(u"\x01\x02"), -1);
  EXPECT_FLOAT_EQ(plausibility(std::u16string(u"ab\0\x0B", 4)), 0);
  EXPECT_FLOAT_EQ(plausibility(u"\x7F!"), 0) << "from 33 on a control character is neither";
  EXPECT_FLOAT_EQ(plausibility(std::u16string{u'a', 0xFFFE, u'b', 0xFDD0}), (2 - 20) / 4.0F);
  EXPECT_FLOAT_EQ(plausibility(std::u16string{0x0378}), -10) << "no character is assigned to it";
  EXPECT_FLOAT_EQ(plausibility(u"😀"), 0) << "surrogates count nothing";
  EXPECT_TRUE(std::isnan(plausibility(u"")));
}

TEST(Plausibility, LooksAtTheFirstThousandUnits) {
  EXPECT_FLOAT_EQ(plausibility(std::u16string(1000, u'a') + std::u16string(500, u'\x01')), 1);
  EXPECT_FLOAT_EQ(plausibility(std::u16string(999, u'a') + std::u16string(500, u'\x01')), 0.998F);
}

class TextFile : public ::testing::Test {
 protected:
  std::optional<std::u16string> text(const std::string& bytes) {
    return textOfFile(scratch_.file("file", bytes));
  }

  kr::testing::ScratchFolder scratch_;
};

TEST_F(TextFile, AMarkTellsTheEncodingAndIsNoPartOfTheText) {
  EXPECT_EQ(text("\xEF\xBB\xBF"
                 "a\xC3\xA9"),
            u"aé");
  EXPECT_EQ(text("\xFE\xFF\0a\x20\xAC"s), u"a€");
  EXPECT_EQ(text("\xFF\xFE"
                 "a\0\xAC\x20"s),
            u"a€");
  EXPECT_EQ(text("\0\0\xFE\xFF\0\1\xF6\0"s), u"😀");
  EXPECT_EQ(text("\xFF\xFE\0\0\0\xF6\1\0"s), u"😀");
  EXPECT_EQ(text("\xEF\xBB\xBF"), u"");
  EXPECT_EQ(text("\xFF\xFE"), u"");
  EXPECT_EQ(text("\xEF\xBB\xBF\xEF\xBB\xBFx"), u"\uFEFFx") << "the second one is a character";
}

TEST_F(TextFile, WithoutAMarkUTF8IsRecognised) {
  EXPECT_EQ(text("a\xC3\xA9\xE2\x82\xAC\n"), u"aé€\n");
  EXPECT_EQ(text(""), u"");
}

TEST_F(TextFile, OtherBytesAreWhatLooksMostLikeText) {
  EXPECT_EQ(text("Un caf\x8E noir et un th\x8E vert"), u"Un café noir et un thé vert") << "Mac Roman";
  EXPECT_EQ(text("\0H\0e\0l\0l\0o\0 \0w\0o\0r\0l\0d"s), u"Hello world") << "UTF-16";
  EXPECT_EQ(text("\x30\x42\x30\x44\x30\x46\x30\x48"), u"0B0D0F0H") << "all of it is ASCII, so it is UTF-8";
}

TEST_F(TextFile, HalfAUnitAtTheEndIsLeftOutBehindAMarkOnly) {
  EXPECT_EQ(text("\xFE\xFF\0a\0"s), u"a");
  EXPECT_EQ(text("\x8E\x41\x8E"), u"éAé") << "an odd number of bytes is not taken for UTF-16";
}

TEST_F(TextFile, OfEqualScoresTheEarlierEncodingIsKept) {
  // Letters in all three, and no UTF-8.
  const std::string letters = "\x8E\x41\x8E\x42";
  EXPECT_FLOAT_EQ(plausibility(decodedUTF16(letters)), 1);
  EXPECT_FLOAT_EQ(plausibility(decodedMacRoman(letters)), 1);
  EXPECT_EQ(text(letters), decodedUTF16(letters));
  const std::string others = "\xE5 \xE5 \xE5";
  EXPECT_FLOAT_EQ(plausibility(decodedMacRoman(others)), plausibility(decodedLatin1(others)));
  EXPECT_EQ(text(others), decodedMacRoman(others));
}

TEST_F(TextFile, BytesThatAreNotInTheEncodingOfTheirMarkAreTakenAsWithoutOne) {
  EXPECT_EQ(text("\xEF\xBB\xBF"
                 "abc def \xFF ghi jkl mno pqr"),
            decodedMacRoman("\xEF\xBB\xBF"
                            "abc def \xFF ghi jkl mno pqr"));
  EXPECT_NE(text("\0\0\xFE\xFF\0\x11\0\0"s), std::nullopt);
}

TEST_F(TextFile, WhatCannotBeReadHasNoText) {
  EXPECT_EQ(textOfFile(scratch_ / "missing"), std::nullopt);
  EXPECT_EQ(textOfFile(scratch_.path()), std::nullopt);
  EXPECT_EQ(textOfFile(""), std::nullopt);
}

// A hundred million bytes, in the one way and in the other.
TEST_F(TextFile, MayBeVeryLong) {
  std::string bytes;
  for (const std::string line = "The quick brown fox, na\xC3\xAFve as ever.\n"; bytes.size() < 100'000'000;)
    bytes += line;
  const std::optional<std::u16string> utf8 = text(bytes);
  ASSERT_TRUE(utf8);
  EXPECT_EQ(utf8->substr(utf8->size() - 20), u"fox, naïve as ever.\n");
  bytes.back() = '\xE9';
  const std::optional<std::u16string> macRoman = text(bytes);
  ASSERT_TRUE(macRoman);
  EXPECT_EQ(macRoman->size(), bytes.size());
}

}  // namespace
}  // namespace kr
