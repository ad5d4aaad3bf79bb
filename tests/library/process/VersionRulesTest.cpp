#include "library/process/VersionRules.h"

#include <gtest/gtest.h>

#include <limits>

namespace kr {
namespace {

TEST(LeadingInteger, ReadsTheDigitsAtTheStart) {
  EXPECT_EQ(leadingInteger("12.3"), 12);
  EXPECT_EQ(leadingInteger("7b4"), 7);
  EXPECT_EQ(leadingInteger("  8"), 8);
  EXPECT_EQ(leadingInteger("-3x"), -3);
  EXPECT_EQ(leadingInteger("+3"), 3);
  EXPECT_EQ(leadingInteger("007"), 7);
}

TEST(LeadingInteger, IsZeroWithoutDigits) {
  EXPECT_EQ(leadingInteger(""), 0);
  EXPECT_EQ(leadingInteger("   "), 0);
  EXPECT_EQ(leadingInteger("x1"), 0);
  EXPECT_EQ(leadingInteger("-"), 0);
  EXPECT_EQ(leadingInteger("- 1"), 0);
}

TEST(LeadingInteger, StopsAtTheLimitsOfTheType) {
  EXPECT_EQ(leadingInteger("2147483647"), std::numeric_limits<int>::max());
  EXPECT_EQ(leadingInteger("2147483648"), std::numeric_limits<int>::max());
  EXPECT_EQ(leadingInteger("99999999999999999999999999"), std::numeric_limits<int>::max());
  EXPECT_EQ(leadingInteger("-2147483648"), std::numeric_limits<int>::min());
  EXPECT_EQ(leadingInteger("-99999999999999999999999999"), std::numeric_limits<int>::min());
}

TEST(IsAtLeastVersion, ComparesNumbersAndNotText) {
  EXPECT_FALSE(isAtLeastVersion("10.9", "10.10"));
  EXPECT_TRUE(isAtLeastVersion("10.10", "10.9"));
}

TEST(IsAtLeastVersion, CountsAMissingNumberAsZero) {
  EXPECT_TRUE(isAtLeastVersion("2.1", "2.1.0"));
  EXPECT_TRUE(isAtLeastVersion("2.1", "2"));
  EXPECT_TRUE(isAtLeastVersion("2", "2.0.0"));
  EXPECT_FALSE(isAtLeastVersion("2", "2.0.1"));
  EXPECT_TRUE(isAtLeastVersion("2.0.1", "2"));
}

TEST(IsAtLeastVersion, LetsTheFirstDifferenceDecide) {
  EXPECT_TRUE(isAtLeastVersion("3.0", "2.9.9"));
  EXPECT_FALSE(isAtLeastVersion("2.9.9", "3.0"));
  EXPECT_TRUE(isAtLeastVersion("1.2.3", "1.2.3"));
}

TEST(IsAtLeastVersion, ReadsOnlyTheLeadingDigitsOfEachNumber) {
  EXPECT_TRUE(isAtLeastVersion("1.2b4", "1.2"));
  EXPECT_TRUE(isAtLeastVersion("1.2", "1.2b4"));
  EXPECT_TRUE(isAtLeastVersion("1.0", "x.y"));
  EXPECT_TRUE(isAtLeastVersion("", ""));
  EXPECT_TRUE(isAtLeastVersion("1..2", "1.0.2"));
  EXPECT_FALSE(isAtLeastVersion("1..2", "1.1"));
}

}  // namespace
}  // namespace kr
