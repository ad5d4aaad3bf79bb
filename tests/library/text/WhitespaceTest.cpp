#include "library/text/Whitespace.h"

#include <gtest/gtest.h>

namespace kr {
namespace {

TEST(Whitespace, IsEveryUnitBelow33AndTheNoBreakSpace) {
  for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
    ASSERT_EQ(isWhitespace(static_cast<char16_t>(unit)), unit <= 32 || unit == 0xA0) << unit;
  }
}

TEST(Trimmed, TakesWhitespaceFromBothEndsOnly) {
  EXPECT_EQ(trimmed(u" \t\x01\u00A0 a b\u00A0c \r\n\0"), u"a b\u00A0c");
  EXPECT_EQ(trimmed(u"a "), u"a");
  EXPECT_EQ(trimmed(u" a"), u"a");
}

TEST(Trimmed, IsEmptyWhereThereIsNothingElse) {
  EXPECT_EQ(trimmed(u"\u00A0\u00A0\u00A0"), u"");
  EXPECT_EQ(trimmed(u" "), u"");
}

TEST(Trimmed, IsNoneWhenThereIsNothingToRemove) {
  EXPECT_EQ(trimmed(u""), std::nullopt);
  EXPECT_EQ(trimmed(u"a"), std::nullopt);
  EXPECT_EQ(trimmed(u"\u2003a\u3000"), std::nullopt) << "the wide spaces of Unicode are none of these";
}

TEST(SystemWhitespace, IsTheSpacesAndLineBreaksOfUnicode) {
  const std::u16string spaces =
      u"\t\n\v\f\r \u0085\u00A0\u1680\u2000\u2001\u2009\u200A\u200B\u2028\u2029\u202F\u205F\u3000";
  EXPECT_EQ(leadingSystemWhitespace(spaces + u"a"), spaces.size());
  EXPECT_EQ(trailingSystemWhitespace(u"a" + spaces), spaces.size());
  for (const char16_t other : std::u16string_view(u"\x01\x1F\x7F\u00AD\u200C\u200D\uFEFFa", 8)) {
    EXPECT_EQ(leadingSystemWhitespace({&other, 1}), 0U) << std::hex << int{other};
  }
}

TEST(AsSingleLine, PutsASpaceForEveryControlCharacterAndTrims) {
  EXPECT_EQ(asSingleLine(u"\r\na\r\nb\tc\x01\n"), u"a  b c");
  EXPECT_EQ(asSingleLine(u"a\x7F\u0085z"), u"a  z");
  EXPECT_EQ(asSingleLine(u"\n \t"), u"");
  EXPECT_EQ(asSingleLine(u"a\u3000"), u"a");
}

TEST(AsSingleLine, CountsFormatCharactersAmongThem) {
  EXPECT_EQ(asSingleLine(u"a\u00ADb\u200Ec\uFEFFd"), u"a b c d");
  EXPECT_EQ(asSingleLine(u"\U0001F468\u200D\U0001F33E"), u"\U0001F468 \U0001F33E");
  EXPECT_EQ(asSingleLine(u"a\U000E0067b"), u"a b") << "a pair of surrogates is one character";
}

TEST(AsSingleLine, IsNoneWhenNothingChanges) {
  EXPECT_EQ(asSingleLine(u""), std::nullopt);
  EXPECT_EQ(asSingleLine(u"a  b\u00A0c\u2028d"), std::nullopt);
  EXPECT_EQ(asSingleLine(std::u16string{u'a', 0xDC00, 0xD800, u'b', 0xD800}), std::nullopt);
}

}  // namespace
}  // namespace kr
