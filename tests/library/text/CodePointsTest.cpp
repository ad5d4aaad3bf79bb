#include "library/text/CodePoints.h"

#include <gtest/gtest.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include "tests/library/text/RandomTexts.h"

namespace kr {
namespace {

constexpr char16_t kHigh = 0xD83D;
constexpr char16_t kLow = 0xDE00;

std::u32string codePoints(std::u16string_view text) {
  std::u32string points;
  forEachCodePoint(text, [&points](char32_t point) { points += point; });
  return points;
}

TEST(NumberOfCodePoints, CountsAPairOnce) {
  EXPECT_EQ(numberOfCodePoints(u""), 0U);
  EXPECT_EQ(numberOfCodePoints(u"a😀b"), 3U);
  EXPECT_EQ(numberOfCodePoints(std::u16string{kHigh, kHigh, kLow, kLow}), 3U);
  EXPECT_EQ(numberOfCodePoints(std::u16string{kLow, kHigh}), 2U);
  std::u16string pairs;
  for (int count = 0; count < 100'000; ++count) pairs += u"😀";
  EXPECT_EQ(numberOfCodePoints(pairs), 100'000U);
  EXPECT_EQ(numberOfCodePoints(u"a" + pairs), 100'001U);
}

TEST(CodePointAt, JoinsAPairAndTakesALoneSurrogateAsItIs) {
  EXPECT_EQ(codePointAt(u"a😀", 0), U'a');
  EXPECT_EQ(codePointAt(u"a😀", 1), U'😀');
  EXPECT_EQ(codePointAt(u"a😀", 2), kLow);
  EXPECT_EQ(codePointAt(std::u16string{kHigh, u'a'}, 0), kHigh);
  EXPECT_EQ(codePointAt(std::u16string{u'a', kHigh}, 1), kHigh);
  EXPECT_EQ(codePointAt(std::u16string{0xDBFF, 0xDFFF}, 0), char32_t{0x10FFFF});
}

TEST(CodePointAt, IsZeroBeyondTheEnd) {
  EXPECT_EQ(codePointAt(u"a", 1), U'\0');
  EXPECT_EQ(codePointAt(u"", 7), U'\0');
}

TEST(ForEachCodePoint, SkipsAHighSurrogateWithTheUnitThatDoesNotCompleteIt) {
  EXPECT_EQ(codePoints(u"a😀b"), U"a😀b");
  EXPECT_EQ(codePoints(std::u16string{kHigh, u'x', u'a'}), U"a");
  EXPECT_EQ(codePoints(std::u16string{kHigh, kHigh, kLow}), std::u32string{kLow});
  EXPECT_EQ(codePoints(std::u16string{u'a', kHigh}), U"a");
  EXPECT_EQ(codePoints(std::u16string{kLow, u'a'}), (std::u32string{kLow, U'a'}));
}

TEST(AppendCodePoint, WritesOneUnitOrAPair) {
  for (char32_t point = 0; point <= 0x10FFFF; point += 7) {
    std::u16string text;
    appendCodePoint(text, point);
    ASSERT_EQ(text.size(), point < 0x10000 ? 1U : 2U);
    ASSERT_EQ(codePointAt(text, 0), point);
  }
}

TEST(Sequences, AreHexadecimalWithCommas) {
  EXPECT_EQ(utf16Sequence(u"aé😀"), u"0061,00E9,D83D,DE00");
  EXPECT_EQ(utf32Sequence(u"aé😀\uFFFF"), u"0061,00E9,1F600,FFFF");
  EXPECT_EQ(utf32Sequence(u"\U0010FFFF"), u"10FFFF");
  EXPECT_EQ(utf16Sequence(std::u16string{kLow, kHigh, u'a'}), u"DE00,D83D,0061");
  EXPECT_EQ(utf32Sequence(std::u16string{kLow, kHigh, u'a'}), u"DE00");
  EXPECT_EQ(utf16Sequence(u""), u"");
  EXPECT_EQ(utf32Sequence(u""), u"");
}

TEST(CodePoints, AgreeWithICUOnTextsWithLoneSurrogates) {
  testing::RandomTexts texts(2);
  for (int round = 0; round < 20000; ++round) {
    const std::u16string text = texts.any(60);
    const auto length = static_cast<std::int32_t>(text.size());
    ASSERT_EQ(numberOfCodePoints(text), static_cast<std::size_t>(::u_countChar32(text.data(), length)));
    for (std::int32_t index = 0; index < length;) {
      const auto at = static_cast<std::size_t>(index);
      UChar32 point = 0;
      U16_NEXT(text.data(), index, length, point);
      ASSERT_EQ(codePointAt(text, at), static_cast<char32_t>(point));
    }
  }
}

// By the definition, where the rule differs from ICU's.
TEST(CodePoints, AreThoseThatARuleWordByWordFinds) {
  testing::RandomTexts texts(3);
  for (int round = 0; round < 20000; ++round) {
    const std::u16string text = texts.any(60);
    std::u32string expected;
    for (std::size_t index = 0; index < text.size(); ++index) {
      if (U16_IS_LEAD(text[index])) {
        if (index + 1 == text.size()) break;
        if (U16_IS_TRAIL(text[index + 1])) {
          expected += static_cast<char32_t>(U16_GET_SUPPLEMENTARY(text[index], text[index + 1]));
        }
        ++index;
      } else {
        expected += char32_t{text[index]};
      }
    }
    ASSERT_EQ(codePoints(text), expected);
  }
}

}  // namespace
}  // namespace kr
