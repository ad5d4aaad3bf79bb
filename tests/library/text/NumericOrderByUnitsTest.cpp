#include "library/text/NumericOrder.h"

#include <gtest/gtest.h>

#include <string>

namespace kr {
namespace {

constexpr auto kBefore = std::weak_ordering::less;
constexpr auto kAfter = std::weak_ordering::greater;
constexpr auto kSame = std::weak_ordering::equivalent;

TEST(NumericOrder, TakesRunsOfDigitsAsNumbers) {
  EXPECT_EQ(numericOrder(u"10.9", u"10.15"), kBefore);
  EXPECT_EQ(numericOrder(u"file 10", u"file 9"), kAfter);
  EXPECT_EQ(numericOrder(u"a2b3", u"a2b3"), kSame);
  EXPECT_EQ(numericOrder(u"a2b3", u"a2b20"), kBefore);
}

TEST(NumericOrder, TakesNumbersOfAnyLength) {
  const std::u16string nines(400, u'9');
  EXPECT_EQ(numericOrder(nines, u"1" + std::u16string(400, u'0')), kBefore);
  EXPECT_EQ(numericOrder(nines, nines), kSame);
  EXPECT_EQ(numericOrder(u"18446744073709551616", u"18446744073709551617"), kBefore);
}

TEST(NumericOrder, PassesOverLeadingZeros) {
  EXPECT_EQ(numericOrder(u"1.02", u"1.2"), kSame);
  EXPECT_EQ(numericOrder(u"000", u"0"), kSame);
  EXPECT_EQ(numericOrder(u"007", u"8"), kBefore);
  EXPECT_EQ(numericOrder(u"0010", u"9"), kAfter);
  EXPECT_EQ(numericOrder(u"1.02x", u"1.2y"), kBefore) << "what follows decides";
}

TEST(NumericOrder, PutsABeginningBeforeTheWhole) {
  EXPECT_EQ(numericOrder(u"", u""), kSame);
  EXPECT_EQ(numericOrder(u"", u"0"), kBefore);
  EXPECT_EQ(numericOrder(u"1.2", u"1.2.0"), kBefore);
  EXPECT_EQ(numericOrder(u"1.2 ", u"1.2"), kAfter);
}

TEST(NumericOrder, ComparesEverythingElseByCode) {
  EXPECT_EQ(numericOrder(u"B", u"a"), kBefore);
  EXPECT_EQ(numericOrder(u"\u00E9", u"z"), kAfter);
}

// A run of digits meets a character that is none at the same place.
TEST(NumericOrder, PutsANumberWhereItsDigitsStand) {
  EXPECT_EQ(numericOrder(u"1 2", u"12"), kBefore);
  EXPECT_EQ(numericOrder(u"1-2", u"12"), kBefore);
  EXPECT_EQ(numericOrder(u"1.2", u"12"), kBefore);
  EXPECT_EQ(numericOrder(u"1:2", u"12"), kBefore) << "the numbers 1 and 12 are compared first";
  EXPECT_EQ(numericOrder(u".", u"0"), kBefore);
  EXPECT_EQ(numericOrder(u"9", u":"), kBefore);
}

TEST(NumericOrder, KnowsNoOtherDigits) {
  EXPECT_EQ(numericOrder(u"\u0661\u0660", u"\u0669"), kBefore) << "by code: Arabic 10 and 9";
}

}  // namespace
}  // namespace kr
