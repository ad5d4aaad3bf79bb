#include "library/text/Lines.h"

#include <gmock/gmock.h>

namespace kr {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Lines, AreSplitByTheSeparatorThatTheTextHolds) {
  EXPECT_THAT(lines(u"a\r\nb\nc\rd\r\ne"), ElementsAre(u"a", u"b\nc\rd", u"e"));
  EXPECT_THAT(lines(u"a\nb\rc\n"), ElementsAre(u"a", u"b\rc", u""));
  EXPECT_THAT(lines(u"a\r\rb"), ElementsAre(u"a", u"", u"b"));
  EXPECT_THAT(lines(u"a"), ElementsAre(u"a"));
  EXPECT_THAT(lines(u""), ElementsAre(u""));
  EXPECT_THAT(lines(u"a\n\rb"), ElementsAre(u"a", u"\rb")) << "no \"\\r\\n\"";
}

TEST(Pieces, AreTheTextsBetweenSeparators) {
  EXPECT_THAT(pieces(u"a,,b,", u','), ElementsAre(u"a", u"", u"b"));
  EXPECT_THAT(pieces(u",a", u','), ElementsAre(u"", u"a"));
  EXPECT_THAT(pieces(u"a", u','), ElementsAre(u"a"));
  EXPECT_THAT(pieces(u"a,,", u','), ElementsAre(u"a", u""));
  EXPECT_THAT(pieces(u",", u','), ElementsAre(u""));
  EXPECT_THAT(pieces(u"", u','), IsEmpty());
}

TEST(WithLineSeparator, ReplacesEveryKindOfLineBreak) {
  EXPECT_EQ(withLineSeparator(u"a\r\nb\rc\nd", u"\n"), u"a\nb\nc\nd");
  EXPECT_EQ(withLineSeparator(u"a\r\nb\rc\nd", u"\r"), u"a\rb\rc\rd");
  EXPECT_EQ(withLineSeparator(u"a\r\nb\rc\nd", u"; "), u"a; b; c; d");
  EXPECT_EQ(withLineSeparator(u"a\r\nb\rc\nd", u""), u"abcd");
}

TEST(WithLineSeparator, LeavesOutTheSearchForTheSeparatorOnly) {
  EXPECT_EQ(withLineSeparator(u"a\nb\rc", u"\r\n"), u"a\r\nb\r\r\nc");
  EXPECT_EQ(withLineSeparator(u"a\r\nb", u"\r\n"), u"a\r\r\n\r\nb");
  EXPECT_EQ(withLineSeparator(u"a\rb", u"<\n>"), u"a<<\n>>b") << "what was put in is found as well";
}

TEST(WithLineSeparator, IsNoneWhenNothingWasReplaced) {
  EXPECT_EQ(withLineSeparator(u"abc", u"\n"), std::nullopt);
  EXPECT_EQ(withLineSeparator(u"a\nb\n", u"\n"), std::nullopt);
  EXPECT_EQ(withLineSeparator(u"a\rb", u"\r"), std::nullopt);
  EXPECT_EQ(withLineSeparator(u"", u"x"), std::nullopt);
}

TEST(Repeated, IsTheTextAsOftenAsAskedFor) {
  EXPECT_EQ(repeated(u"ab", 0), u"");
  EXPECT_EQ(repeated(u"ab", -1), u"");
  EXPECT_EQ(repeated(u"ab", 1), u"ab");
  EXPECT_EQ(repeated(u"ab", 5), u"ababababab");
  std::u16string expected;
  for (long count = 0; count < 70; ++count, expected += u"xyz") EXPECT_EQ(repeated(u"xyz", count), expected);
}

TEST(Repeated, IsEmptyWhereNoTextIsThatLong) {
  EXPECT_EQ(repeated(u"", std::numeric_limits<long>::max()), u"");
  EXPECT_EQ(repeated(u"ab", std::numeric_limits<long>::max()), u"");
}

}  // namespace
}  // namespace kr
