#include "library/text/Wildcards.h"

#include <gtest/gtest.h>

#include <chrono>

#include "tests/library/text/RandomTexts.h"

namespace kr {
namespace {

TEST(Wildcards, AStarStandsForAnyRunOfCharacters) {
  EXPECT_TRUE(matchesWildcards(u"abc", u"a*c"));
  EXPECT_TRUE(matchesWildcards(u"abc", u"*"));
  EXPECT_TRUE(matchesWildcards(u"abc", u"abc*"));
  EXPECT_TRUE(matchesWildcards(u"abc", u"*b*"));
  EXPECT_TRUE(matchesWildcards(u"abc", u"**a**b**c**"));
  EXPECT_TRUE(matchesWildcards(u"", u"*"));
  EXPECT_FALSE(matchesWildcards(u"abc", u"a*b*c*d"));
  EXPECT_FALSE(matchesWildcards(u"abc", u"b*"));
  EXPECT_FALSE(matchesWildcards(u"abc", u"*b"));
}

TEST(Wildcards, WithoutAStarThePatternIsTheText) {
  EXPECT_TRUE(matchesWildcards(u"abc", u"abc"));
  EXPECT_TRUE(matchesWildcards(u"", u""));
  EXPECT_FALSE(matchesWildcards(u"abc", u"ab"));
  EXPECT_FALSE(matchesWildcards(u"abc", u""));
  EXPECT_FALSE(matchesWildcards(u"", u"a"));
}

TEST(Wildcards, PiecesDoNotOverlap) {
  EXPECT_FALSE(matchesWildcards(u"aba", u"ab*ba"));
  EXPECT_TRUE(matchesWildcards(u"abba", u"ab*ba"));
  EXPECT_FALSE(matchesWildcards(u"a", u"a*a"));
  EXPECT_FALSE(matchesWildcards(u"xaba", u"x*ab*ba"));
}

TEST(Wildcards, CaseAndOtherPatternCharactersCount) {
  EXPECT_FALSE(matchesWildcards(u"ABC", u"a*"));
  EXPECT_FALSE(matchesWildcards(u"abc", u"a?c"));
  EXPECT_TRUE(matchesWildcards(u"[a-z]\\", u"[*]\\"));
}

TEST(Wildcards, UnitsAreComparedNotCharacters) {
  EXPECT_TRUE(matchesWildcards(u"😀", std::u16string{0xD83D, u'*'}));
  EXPECT_FALSE(matchesWildcards(u"e\u0301", u"é")) << "canonically equal, but not the same units";
}

// Every way to place the pieces is tried.
bool matchesByTrying(std::u16string_view text, std::u16string_view pattern) {
  if (pattern.empty()) return text.empty();
  if (pattern.front() != u'*') {
    return text.starts_with(pattern.front()) && matchesByTrying(text.substr(1), pattern.substr(1));
  }
  for (std::size_t skipped = 0; skipped <= text.size(); ++skipped) {
    if (matchesByTrying(text.substr(skipped), pattern.substr(1))) return true;
  }
  return false;
}

TEST(Wildcards, MatchWhatTryingEveryWayMatches) {
  testing::RandomTexts texts(7);
  int matches = 0;
  for (int round = 0; round < 200000; ++round) {
    const std::u16string text = texts.of(u"ab", 9);
    const std::u16string pattern = texts.of(u"ab*", 6);
    const bool expected = matchesByTrying(text, pattern);
    matches += expected ? 1 : 0;
    ASSERT_EQ(matchesWildcards(text, pattern), expected);
  }
  EXPECT_GT(matches, 10000);
}

// Each of these takes hours where a star is tried at every place.
TEST(Wildcards, TakeLittleTimeWhateverTheStars) {
  const std::u16string text(1 << 20, u'a');
  std::u16string stars, letters, words;
  for (int count = 0; count < 1000; ++count) {
    stars += u'*';
    letters += u"*a";
    words += u"*aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaab";
  }
  const auto start = std::chrono::steady_clock::now();
  EXPECT_TRUE(matchesWildcards(text, stars));
  EXPECT_TRUE(matchesWildcards(text, letters));
  EXPECT_FALSE(matchesWildcards(text, letters + u"b"));
  EXPECT_FALSE(matchesWildcards(text, words));
  EXPECT_FALSE(matchesWildcards(text, u"*" + std::u16string(text.size() / 2, u'a') + u"b*"));
  // A hundred times what it takes, for a machine that has other things to do.
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

}  // namespace
}  // namespace kr
