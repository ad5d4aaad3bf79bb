#include "library/text/PercentEscapes.h"

#include <gtest/gtest.h>

#include "tests/library/text/RandomTexts.h"

namespace kr {
namespace {

TEST(WithPercentEscapesExpanded, DecodesRunsOfBytesAsUTF8) {
  EXPECT_EQ(withPercentEscapesExpanded(u"a%20b%2fc"), u"a b/c");
  EXPECT_EQ(withPercentEscapesExpanded(u"%C3%A9%e2%82%ac%F0%9F%98%80"), u"é€😀");
  EXPECT_EQ(withPercentEscapesExpanded(u"100%25"), u"100%");
  EXPECT_EQ(withPercentEscapesExpanded(u"%2525"), u"%25") << "once only";
  EXPECT_EQ(withPercentEscapesExpanded(u"é😀"), u"é😀");
  EXPECT_EQ(withPercentEscapesExpanded(u"a%00b"), std::u16string(u"a\0b", 3));
  EXPECT_EQ(withPercentEscapesExpanded(u""), u"");
}

TEST(WithPercentEscapesExpanded, FailsForWhatIsNoEscape) {
  for (const std::u16string_view text : {u"%", u"a%2", u"%zz", u"%4g", u"100% b", u"%%41", u"%41%"}) {
    EXPECT_EQ(withPercentEscapesExpanded(text), std::nullopt);
  }
}

TEST(WithPercentEscapesExpanded, FailsForBytesThatAreNotUTF8) {
  for (const std::u16string_view text :
       {u"%FF", u"%C3", u"%C3x%A9", u"%C3é", u"%ED%A0%80", u"%C0%80", u"%F4%90%80%80"}) {
    EXPECT_EQ(withPercentEscapesExpanded(text), std::nullopt);
  }
}

TEST(WithPercentEscapesAdded, LeavesWhatMayStandInAURL) {
  std::u16string ascii, expected;
  const std::u16string_view allowed =
      u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.!~*'();/?:@&=+$,";
  const std::u16string_view digits = u"0123456789ABCDEF";
  for (char16_t unit = 0; unit < 0x80; ++unit) {
    ascii += unit;
    if (allowed.find(unit) != std::u16string_view::npos) {
      expected += unit;
    } else {
      expected += std::u16string{u'%', digits[unit >> 4U], digits[unit & 15U]};
    }
  }
  EXPECT_EQ(withPercentEscapesAdded(ascii), expected);
  EXPECT_EQ(withPercentEscapesAdded(u"é€😀"), u"%C3%A9%E2%82%AC%F0%9F%98%80");
}

TEST(WithPercentEscapesAdded, FailsForALoneSurrogate) {
  EXPECT_EQ(withPercentEscapesAdded(std::u16string{u'a', 0xD800}), std::nullopt);
  EXPECT_EQ(withPercentEscapesAdded(std::u16string{0xDC80, u'a'}), std::nullopt);
  EXPECT_EQ(withPercentEscapesAdded(std::u16string{0xD83D, 0xD83D, 0xDE00}), std::nullopt);
}

TEST(WithPercentEscapesAdded, ComesBackWhenItIsExpanded) {
  testing::RandomTexts texts(6);
  int valid = 0;
  for (int round = 0; round < 20000; ++round) {
    const std::u16string text = texts.any(8);
    const std::optional<std::u16string> there = withPercentEscapesAdded(text);
    if (!there) continue;
    ++valid;
    ASSERT_EQ(withPercentEscapesExpanded(*there), text);
  }
  EXPECT_GT(valid, 3000);
}

TEST(WithPercentEscapes, EscapesNothingTwiceAndKeepsNumberSigns) {
  EXPECT_EQ(withPercentEscapes(u"http://x.org/a b"), u"http://x.org/a%20b");
  EXPECT_EQ(withPercentEscapes(u"http://x.org/a%20b c"), u"http://x.org/a%20b%20c");
  EXPECT_EQ(withPercentEscapes(u"x#part"), u"x#part");
  EXPECT_EQ(withPercentEscapes(u"x%23part"), u"x#part");
  EXPECT_EQ(withPercentEscapes(u"caf%C3%A9/é"), u"caf%C3%A9/%C3%A9");
  EXPECT_EQ(withPercentEscapes(u"%25"), u"%25");
  EXPECT_EQ(withPercentEscapes(u"%2523"), u"%2523") << "an escaped percent sign, not an escaped number sign";
}

TEST(WithPercentEscapes, FailsWhenAStepFails) {
  EXPECT_EQ(withPercentEscapes(u"100%"), std::nullopt);
  EXPECT_EQ(withPercentEscapes(u"%FF"), std::nullopt);
  EXPECT_EQ(withPercentEscapes(std::u16string{0xD800}), std::nullopt);
}

}  // namespace
}  // namespace kr
