#include "library/text/NumericOrder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/library/text/RandomTexts.h"

namespace kr {
namespace {

void expectBefore(std::u16string_view one, std::u16string_view other) {
  EXPECT_EQ(numericOrder(one, other), std::strong_ordering::less);
  EXPECT_EQ(numericOrder(other, one), std::strong_ordering::greater);
}

void expectEqual(std::u16string_view one, std::u16string_view other) {
  EXPECT_EQ(numericOrder(one, other), std::strong_ordering::equal);
  EXPECT_EQ(numericOrder(other, one), std::strong_ordering::equal);
}

TEST(NumericOrder, ComparesRunsOfDigitsByValue) {
  expectBefore(u"a9", u"a10");
  expectBefore(u"10.9", u"10.10");
  expectBefore(u"9", u"10");
  expectBefore(u"a2b10", u"a2b11");
  expectBefore(u"18446744073709551616", u"18446744073709551617");
  expectBefore(std::u16string(400, u'9'), u"1" + std::u16string(400, u'0'));
}

TEST(NumericOrder, LeadingZerosDoNotCount) {
  expectEqual(u"01", u"1");
  expectEqual(u"a007b", u"a7b");
  expectEqual(u"0", u"000");
  expectBefore(u"a007", u"a8");
  expectBefore(u"07x", u"7y");
}

TEST(NumericOrder, ComparesAllElseByCharacter) {
  expectBefore(u"a", u"b");
  expectBefore(u"A", u"a");
  expectBefore(u"1.0", u"1a");
  expectBefore(u"1-2", u"12");
  expectBefore(u"a 1", u"a1");
  expectBefore(u"a1", u"ab");
  expectBefore(u"\uFFFD", u"\U0001F600");
  expectBefore(std::u16string{0xD83D}, u"\U0001F600");
  expectBefore(std::u16string{0xD800, u'a'}, std::u16string{0xD800, u'b'});
}

// A run of digits meets a character that is none at the same place.
TEST(NumericOrder, PutsANumberWhereItsDigitsStand) {
  expectBefore(u"1 2", u"12");
  expectBefore(u"1.2", u"12");
  expectBefore(u"1:2", u"12");
  expectBefore(u".", u"0");
  expectBefore(u"9", u":");
}

TEST(NumericOrder, KnowsNoOtherDigits) {
  expectBefore(u"\u0661\u0660", u"\u0669");
}

TEST(NumericOrder, ATextThatTheOtherOneBeginsWithComesFirst) {
  expectBefore(u"", u"a");
  expectBefore(u"abc", u"abcd");
  expectBefore(u"1", u"1.0");
  expectBefore(u"1.2", u"1.2 ");
  expectBefore(u"1.2", u"1.2.3");
  expectEqual(u"", u"");
  expectEqual(u"abc1.2", u"abc1.2");
}

TEST(NumericOrder, ComparesLongTextsFromTheFirstDifference) {
  const std::u16string same(5000, u'x');
  expectBefore(same + u"9", same + u"10");
  expectBefore(same + u"1" + std::u16string(600, u'0'), same + u"1" + std::u16string(600, u'0') + u"0");
  expectEqual(same, same);
}

// An independent reading of the rule: the texts as lists of numbers and characters, compared as lists.
struct Part {
  char16_t first;      // the character, or the first digit of the number
  std::string number;  // in a length that all numbers have, so that the order of the texts is theirs
};

std::vector<Part> parts(const std::u16string& text) {
  std::vector<Part> list;
  for (std::size_t index = 0; index < text.size();) {
    const char16_t first = text[index];
    std::string digits;
    while (index < text.size() && text[index] >= u'0' && text[index] <= u'9') {
      digits += static_cast<char>(text[index++]);
    }
    if (digits.empty()) {
      list.push_back({first, ""});
      ++index;
    } else {
      list.push_back({first, std::string(30 - digits.size(), '0') + digits});
    }
  }
  return list;
}

std::strong_ordering orderOfParts(const std::u16string& one, const std::u16string& other) {
  const std::vector<Part> these = parts(one);
  const std::vector<Part> those = parts(other);
  for (std::size_t index = 0; index < these.size() && index < those.size(); ++index) {
    const Part& mine = these[index];
    const Part& yours = those[index];
    if (!mine.number.empty() && !yours.number.empty()) {
      if (mine.number != yours.number) return mine.number.compare(yours.number) <=> 0;
    } else if (mine.first != yours.first) {
      return mine.first <=> yours.first;
    }
  }
  return these.size() <=> those.size();
}

TEST(NumericOrder, IsTheOrderOfListsOfNumbersAndCharacters) {
  testing::RandomTexts texts(8);
  for (int round = 0; round < 200000; ++round) {
    // Characters below and above all digits.
    const std::u16string one = texts.of(u"0129.-ab", 10);
    const std::u16string other = texts.of(u"0129.-ab", 10);
    ASSERT_EQ(numericOrder(one, other), orderOfParts(one, other));
    ASSERT_EQ(numericOrder(one, one), std::strong_ordering::equal);
  }
}

TEST(NumericOrderOfBeginnings, IsThatOfTheTextsOrNone) {
  testing::RandomTexts texts(9);
  int decided = 0;
  for (int round = 0; round < 200000; ++round) {
    const std::u16string one = texts.of(u"019aB\xD83D\xDE00", 8);
    const std::u16string other = texts.of(u"019aB\xD83D\xDE00", 8);
    const std::size_t length = texts.number(9);
    const auto order = numericOrderOfBeginnings(one.substr(0, length), other.substr(0, length));
    if (!order) continue;
    ++decided;
    ASSERT_EQ(*order, numericOrder(one, other));
    const auto folded =
        caseInsensitiveNumericOrderOfBeginnings(one.substr(0, length), other.substr(0, length));
    if (folded) ASSERT_EQ(*folded, caseInsensitiveNumericOrder(one, other));
  }
  EXPECT_GT(decided, 50000);
  EXPECT_EQ(numericOrderOfBeginnings(u"a1", u"a2"), std::nullopt) << "digits may follow";
  EXPECT_EQ(numericOrderOfBeginnings(u"a1x", u"a2x"), std::strong_ordering::less);
}

TEST(CaseInsensitiveNumericOrder, DoesNotSeeCase) {
  EXPECT_EQ(caseInsensitiveNumericOrder(u"Version 9", u"vERSION 10"), std::strong_ordering::less);
  EXPECT_EQ(caseInsensitiveNumericOrder(u"ABC10", u"abc10"), std::strong_ordering::equal);
  EXPECT_EQ(caseInsensitiveNumericOrder(u"ÉÄΣ10", u"éäσ010"), std::strong_ordering::equal);
  EXPECT_EQ(caseInsensitiveNumericOrder(u"ЖУК", u"жук"), std::strong_ordering::equal);
  EXPECT_EQ(caseInsensitiveNumericOrder(u"a10", u"B9"), std::strong_ordering::less);
  EXPECT_EQ(caseInsensitiveNumericOrder(u"B9", u"a10"), std::strong_ordering::greater);
  EXPECT_EQ(caseInsensitiveNumericOrder(u"", u""), std::strong_ordering::equal);
  EXPECT_EQ(caseInsensitiveNumericOrder(u"", u"A"), std::strong_ordering::less);
}

TEST(CaseInsensitiveNumericOrder, TakesTextsWithLoneSurrogates) {
  const std::u16string upper{0xD800, u'A'}, lower{0xD800, u'a'};
  EXPECT_EQ(caseInsensitiveNumericOrder(upper, lower), std::strong_ordering::equal);
}

}  // namespace
}  // namespace kr
