#include "library/utilities/VersionOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

namespace kr {
namespace {

int order(std::u16string_view one, std::u16string_view other) {
  const std::weak_ordering result = versionOrder(one, other);
  return result < 0 ? -1 : result > 0 ? 1 : 0;
}

TEST(DevelopmentStage, IsThePlaceOfTheLetterInTheTable) {
  EXPECT_EQ(developmentStage(u'p'), 0U);
  EXPECT_EQ(developmentStage(u'd'), 1U);
  EXPECT_EQ(developmentStage(u'a'), 2U);
  EXPECT_EQ(developmentStage(u'b'), 3U);
  EXPECT_EQ(developmentStage(u'f'), 4U);
  EXPECT_EQ(developmentStage(u' '), 5U);
}

TEST(DevelopmentStage, IsZeroForEveryOtherCharacter) {
  for (const char16_t other : {u'x', u'B', u'A', u'1', u'\0', u'\u00E9'})
    EXPECT_EQ(developmentStage(other), 0U);
}

struct Row {
  std::u16string_view one;
  std::u16string_view other;
  int result;
  const char* reason;
};

constexpr std::array<Row, 26> kRows{{
    {u"1.2.3", u"1.2.3", 0, "the same"},
    {u"1.2", u"1.2.3", -1, "a beginning"},
    {u"1.2", u"1.2.0", -1, "nothing is added"},
    {u"10.15", u"10.9", 1, "numbers"},
    {u"1.2b4", u"1.2", -1, "a beta before its release"},
    {u"1.2d5", u"1.2a1", -1, "the stage before the build"},
    {u"1.2b4", u"1.2b12", -1, "builds are numbers"},
    {u"1.2a9", u"1.2b1", -1, "an alpha before a beta"},
    {u"1.2b9", u"1.2f1", -1, "a beta before the final stage"},
    {u"1.2f1", u"1.2", -1, "the final stage before its release"},
    {u"1.2p1", u"1.2d1", -1, "p is the first stage"},
    {u"1.2x9", u"1.2p1", 1, "an unknown letter counts as p"},
    {u"", u"", 0, "nothing"},
    {u"", u"1.0", -1, "nothing comes first"},
    {u"1.3b1", u"1.2", 1, "the base before the stage"},
    {u"2.0", u"2.0b99", 1, "a release after all of its betas"},
    {u"1.0B2", u"1.0d1", -1, "a capital letter is no stage"},
    {u"1.2 b3", u"1.2b3", 1, "the space belongs to the base"},
    {u"1.2beta3", u"1.2beta10", -1, "letters behind the first belong to the build"},
    {u"1.2b", u"1.2b0", -1, "a build of no digits is a beginning of one"},
    {u"10.13", u"10.13.1", -1, "a system and its update"},
    {u"1.2\u00E93", u"1.2p3", 0, "letters of every script are letters"},
    {u"1.2\u4E002", u"1.2p1", 1, "and so are ideographs"},
    {u"1.2\U0001D4002", u"1.2p2", 0, "and what takes two units"},
    {u"1.2\xD835"
     u"3",
     u"1.2", 1, "half of a pair is no letter and stays in the base"},
    {u"b4", u"1.0", -1, "the base before the letter may be empty"},
}};

TEST(VersionOrder, IsThatOfTheTable) {
  for (const Row& row : kRows) {
    EXPECT_EQ(order(row.one, row.other), row.result) << row.reason;
    EXPECT_EQ(order(row.other, row.one), -row.result) << row.reason << ", turned round";
  }
}

// Versions as makers write them, and texts that hold everything that the rules speak of.
class Versions {
 public:
  std::u16string next() {
    std::u16string text;
    if (chance(4)) {
      for (std::size_t length = below(8); length > 0; --length)
        text += kCharacters[below(kCharacters.size())];
      return text;
    }
    for (std::size_t parts = 1 + below(3); parts > 0; --parts) {
      if (!text.empty()) text += u'.';
      if (chance(8)) text += u'0';
      text += digits(below(13));
    }
    if (chance(2)) {
      if (chance(6)) text += u' ';
      text += kStages[below(kStages.size())];
      if (!chance(4)) text += digits(below(13));
    }
    return text;
  }

 private:
  static constexpr std::u16string_view kCharacters = u"0129..  -:pdabfxB\u00E9\u0661";
  static constexpr std::u16string_view kStages = u"pdabfxB";

  std::size_t below(std::size_t limit) { return generator_() % limit; }
  bool chance(std::size_t of) { return below(of) == 0; }
  static std::u16string digits(std::size_t number) {
    const std::string text = std::to_string(number);
    return {text.begin(), text.end()};
  }

  std::mt19937 generator_{20260};
};

std::string shown(const std::u16string& text) {
  std::string result;
  for (const char16_t unit : text) result += unit < 0x7F ? static_cast<char>(unit) : '?';
  return '"' + result + '"';
}

// The rules imply a total preorder: every version can be compared with every other, turning the question
// round turns the answer round, and a sequence can be sorted.
TEST(VersionOrder, IsAntisymmetricAndTransitive) {
  constexpr int kTriples = 50'000;
  Versions versions;
  int strict = 0;
  int equivalent = 0;
  for (int i = 0; i < kTriples; ++i) {
    const std::u16string a = versions.next();
    const std::u16string b = versions.next();
    const std::u16string c = versions.next();
    const int ab = order(a, b);
    const int bc = order(b, c);
    const int ac = order(a, c);
    ASSERT_EQ(order(a, a), 0) << shown(a);
    ASSERT_EQ(order(b, a), -ab) << shown(a) << ' ' << shown(b);
    if (ab <= 0 && bc <= 0) {
      ASSERT_EQ(ac, std::min(ab, bc)) << shown(a) << ' ' << shown(b) << ' ' << shown(c);
      ++(ab < 0 && bc < 0 ? strict : equivalent);
    }
  }
  EXPECT_GT(strict, kTriples / 10) << "the versions are too much alike to show anything";
  EXPECT_GT(equivalent, 100) << "the versions are too different to show anything";
}

// Equivalent is not identical: these cannot be told apart by the order, and neither can what is compared with
// them.
TEST(VersionOrder, HoldsSomeVersionsForTheSameThatAreWrittenDifferently) {
  const std::vector<std::array<std::u16string, 2>> pairs{
      {u"1.02", u"1.2"}, {u"1.2x3", u"1.2y3"}, {u"1.2b04", u"1.2b4"}, {u"1.2p3", u"1.2P3"}};
  Versions versions;
  for (const auto& [one, other] : pairs) {
    ASSERT_EQ(order(one, other), 0);
    for (int i = 0; i < 2000; ++i) {
      const std::u16string third = versions.next();
      ASSERT_EQ(order(one, third), order(other, third)) << shown(third);
    }
  }
}

TEST(PlainVersion, IsTheDigitsAndDotsAtTheBeginning) {
  EXPECT_EQ(plainVersion(u"2.1b3"), u"2.1");
  EXPECT_EQ(plainVersion(u"beta"), u"");
  EXPECT_EQ(plainVersion(u"3.0"), u"3.0");
  EXPECT_EQ(plainVersion(u""), u"");
  EXPECT_EQ(plainVersion(u"1.2 3"), u"1.2");
  EXPECT_EQ(plainVersion(u"..1-"), u"..1");
  EXPECT_EQ(plainVersion(u"1\u0661"), u"1") << "digits of other scripts are none";
}

}  // namespace
}  // namespace kr
