#include "library/text/LiteralSearch.h"

#include <gtest/gtest.h>

#include "tests/library/text/RandomTexts.h"

namespace kr {
namespace {

TEST(FindUnit, FindsTheFirstOneFromAPlaceOn) {
  std::u16string text(1000, u'a');
  EXPECT_EQ(findUnit(text, u'x'), kNotFound);
  for (const std::size_t place : {0U, 1U, 63U, 64U, 500U, 999U}) {
    text[place] = u'x';
    EXPECT_EQ(findUnit(text, u'x', place), place);
    EXPECT_EQ(findUnit(text, u'x', place == 0 ? 0 : place - 1), place);
    text[place] = u'a';
  }
  EXPECT_EQ(findUnit(text, u'a', 1000), kNotFound);
  EXPECT_EQ(findUnit(text, u'a', 5000), kNotFound);
  EXPECT_EQ(findUnit(u"", u'a'), kNotFound);
}

TEST(LiteralSearch, FindsWhatTheStandardLibraryFinds) {
  testing::RandomTexts texts(1);
  for (int round = 0; round < 20000; ++round) {
    const std::u16string text = texts.of(u"ab", 300);
    const std::u16string wanted = u"a" + texts.of(u"ab", 12);
    LiteralSearch search(wanted);
    std::size_t from = 0;
    for (std::size_t found = 0; found != kNotFound; from = found + 1) {
      found = search.find(text, from);
      ASSERT_EQ(found, text.find(wanted, from));
      if (found == kNotFound) break;
    }
  }
}

TEST(LiteralSearch, FindsNothingBeyondTheEnd) {
  EXPECT_EQ(LiteralSearch(u"abc").find(u"ab"), kNotFound);
  EXPECT_EQ(LiteralSearch(u"abc").find(u"abc", 1), kNotFound);
  EXPECT_EQ(LiteralSearch(u"abc").find(u"abc", 9), kNotFound);
  EXPECT_EQ(LiteralSearch(u"").find(u"abc"), kNotFound);
}

// Comparing at every place would take a trillion comparisons here.
TEST(LiteralSearch, IsNotSlowedDownByTextsThatNearlyMatchEverywhere) {
  const std::u16string text(4'000'000, u'a');
  std::u16string wanted(500'000, u'a');
  wanted[wanted.size() / 2] = u'b';
  EXPECT_EQ(LiteralSearch(wanted).find(text), kNotFound);
  std::u16string withMatch = text;
  withMatch[3'900'000] = u'b';
  EXPECT_EQ(LiteralSearch(wanted).find(withMatch), kNotFound) << "it would end behind the text";
  withMatch[1'000'000] = u'b';
  EXPECT_EQ(LiteralSearch(wanted).find(withMatch), 750'000U);
}

TEST(ReplacedLiterally, ReplacesFromLeftToRightWithoutOverlap) {
  EXPECT_EQ(replacedLiterally(u"aaaaa", u"aa", u"b"), u"bba");
  EXPECT_EQ(replacedLiterally(u"a.b.", u".", u"--"), u"a--b--");
  EXPECT_EQ(replacedLiterally(u"abc", u"b", u""), u"ac");
}

TEST(ReplacedLiterally, IsNoneWithoutAnOccurrence) {
  EXPECT_EQ(replacedLiterally(u"abc", u"x", u"y"), std::nullopt);
  EXPECT_EQ(replacedLiterally(u"abc", u"", u"y"), std::nullopt);
  EXPECT_EQ(replacedLiterally(u"", u"x", u"y"), std::nullopt);
}

}  // namespace
}  // namespace kr
