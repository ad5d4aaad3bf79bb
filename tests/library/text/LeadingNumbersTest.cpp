#include "library/text/LeadingNumbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

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

TEST(LeadingDecimal, ReadsFractionAndExponent) {
  EXPECT_EQ(leadingDecimal(" \t-1.5e3x"), -1500);
  EXPECT_EQ(leadingDecimal("+.5"), 0.5);
  EXPECT_EQ(leadingDecimal("5."), 5);
  EXPECT_EQ(leadingDecimal("25E-2"), 0.25);
  EXPECT_EQ(leadingDecimal("1.5.5"), 1.5);
  EXPECT_EQ(leadingDecimal("3.25\n"), 3.25);
}

TEST(LeadingDecimal, AnExponentWithoutDigitsIsNone) {
  EXPECT_EQ(leadingDecimal("2e"), 2);
  EXPECT_EQ(leadingDecimal("2e+"), 2);
  EXPECT_EQ(leadingDecimal("2ex"), 2);
}

TEST(LeadingDecimal, IsZeroWithoutDigits) {
  for (const char* text : {"", ".", "-", "+.", "e5", "inf", "nan", "- 1", "--1"}) {
    EXPECT_EQ(leadingDecimal(text), 0.0) << text;
  }
  EXPECT_EQ(leadingDecimal("0x10"), 0.0);
}

TEST(LeadingDecimal, IsTheNearestNumberWhateverTheLength) {
  EXPECT_EQ(leadingDecimal("1." + std::string(400, '0')), 1);
  EXPECT_EQ(leadingDecimal("0." + std::string(400, '9')), 1);
  EXPECT_EQ(leadingDecimal("9007199254740993"), 9007199254740992.0);
  for (const std::string& large : {std::string("1e999"), std::string(400, '9')}) {
    EXPECT_GE(leadingDecimal(large), std::numeric_limits<double>::max());
    EXPECT_LE(leadingDecimal("-" + large), -std::numeric_limits<double>::max());
  }
  EXPECT_EQ(leadingDecimal("1e-999"), 0.0);
}

}  // namespace
}  // namespace kr
