#include "library/text/Numbers.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>

namespace kr {
namespace {

TEST(NumericValue, TakesTheBaseFromThePrefix) {
  EXPECT_EQ(numericValue(u"42"), 42);
  EXPECT_EQ(numericValue(u"0x1F"), 31);
  EXPECT_EQ(numericValue(u"0X1f"), 31);
  EXPECT_EQ(numericValue(u"017"), 15);
  EXPECT_EQ(numericValue(u"-0x10"), -16);
  EXPECT_EQ(numericValue(u"+7"), 7);
  EXPECT_EQ(numericValue(u" \t\n 12"), 12);
}

TEST(NumericValue, StopsAtTheFirstOtherCharacter) {
  EXPECT_EQ(numericValue(u"12abc"), 12);
  EXPECT_EQ(numericValue(u"089"), 0);
  EXPECT_EQ(numericValue(u"0xZ"), 0);
  EXPECT_EQ(numericValue(u"1.9"), 1);
  EXPECT_EQ(numericValue(u"1é"), 1);
  EXPECT_EQ(numericValue(std::u16string(u"1\0"
                                        u"2",
                                        3)),
            1);
}

TEST(NumericValue, IsZeroWithoutANumber) {
  for (const std::u16string_view text : {u"", u"abc", u"-", u"--1", u"- 1", u"\u00A01", u"\u0661"}) {
    EXPECT_EQ(numericValue(text), 0);
  }
}

TEST(NumericValue, IsTheNearestNumberThatFits) {
  EXPECT_EQ(numericValue(u"9223372036854775807"), std::numeric_limits<long>::max());
  EXPECT_EQ(numericValue(u"9223372036854775808"), std::numeric_limits<long>::max());
  EXPECT_EQ(numericValue(u"-99999999999999999999"), std::numeric_limits<long>::min());
  EXPECT_EQ(numericValue(std::u16string(10000, u'0') + u"17"), 15);
}

TEST(BooleanValue, IsToldByTheFirstCharacter) {
  for (const std::u16string_view text :
       {u"yes", u"Yes", u"True", u"true", u"1", u"10", u"t", u"y", u"toast"}) {
    EXPECT_TRUE(booleanValue(text));
  }
}

TEST(BooleanValue, IsElseWhetherTheNumberIsNotZero) {
  for (const std::u16string_view text :
       {u"2", u"-1", u" 3", u" 1", u"007", u"+5x", u"99999999999999999999"}) {
    EXPECT_TRUE(booleanValue(text));
  }
  for (const std::u16string_view text :
       {u"0", u"no", u"", u"x1", u"000", u"-0", u" yes", u"0x10", u"0.5", u"--1"}) {
    EXPECT_FALSE(booleanValue(text));
  }
}

TEST(IsIntegerNumber, IsTrueForDigitsOnly) {
  EXPECT_TRUE(isIntegerNumber(u"0"));
  EXPECT_TRUE(isIntegerNumber(u"0123456789"));
  for (const std::u16string_view text : {u"", u"-1", u"+1", u"1 ", u"1.0", u"1a", u"\u0661", u"/", u":"}) {
    EXPECT_FALSE(isIntegerNumber(text));
  }
}

TEST(WithDecimalPoint, TakesTheLaterOfCommaAndPointForTheSeparator) {
  EXPECT_EQ(withDecimalPoint(u"1.234,56"), u"1234.56");
  EXPECT_EQ(withDecimalPoint(u"1,234.56"), u"1234.56");
  EXPECT_EQ(withDecimalPoint(u"1.234.567,5"), u"1234567.5");
  EXPECT_EQ(withDecimalPoint(u"1,234,567.5"), u"1234567.5");
  EXPECT_EQ(withDecimalPoint(u"1.2,3,4"), u"12.3.4");
  EXPECT_EQ(withDecimalPoint(u"1,2.3.4"), u"12.3.4");
  EXPECT_EQ(withDecimalPoint(u"1,2.3,4"), u"12.34") << "the first of each decides";
}

TEST(WithDecimalPoint, TurnsCommasIntoPointsWhereThereIsNoPoint) {
  EXPECT_EQ(withDecimalPoint(u"3,5"), u"3.5");
  EXPECT_EQ(withDecimalPoint(u"1,2,3"), u"1.2.3");
  EXPECT_EQ(withDecimalPoint(u"3.5"), u"3.5");
  EXPECT_EQ(withDecimalPoint(u"35"), u"35");
  EXPECT_EQ(withDecimalPoint(u""), u"");
}

TEST(SmartFloatValue, ReadsTheNumberAtTheStart) {
  EXPECT_FLOAT_EQ(smartFloatValue(u"1.234,56"), 1234.56F);
  EXPECT_FLOAT_EQ(smartFloatValue(u"3,5 kg"), 3.5F);
  EXPECT_FLOAT_EQ(smartFloatValue(u"-,5"), -0.5F);
  EXPECT_FLOAT_EQ(smartFloatValue(u"1.2,3,4"), 12.3F);
  EXPECT_FLOAT_EQ(smartFloatValue(u" +2e3x"), 2000.0F);
  EXPECT_FLOAT_EQ(smartFloatValue(u"2e"), 2.0F);
  EXPECT_FLOAT_EQ(smartFloatValue(u"5."), 5.0F);
  EXPECT_FLOAT_EQ(smartFloatValue(u"2e-1"), 0.2F);
  EXPECT_FLOAT_EQ(smartFloatValue(u"12345678901234567890"), 12345678901234567890.0F);
}

TEST(SmartFloatValue, IsZeroWithoutANumber) {
  for (const std::u16string_view text : {u"", u"abc", u".", u"-", u"inf", u"nan", u"e5", u"\u0661"}) {
    EXPECT_EQ(smartFloatValue(text), 0.0F);
  }
  EXPECT_EQ(smartFloatValue(u"0x10"), 0.0F);
}

TEST(SmartFloatValue, IsInfiniteOrZeroBeyondTheRange) {
  EXPECT_TRUE(std::isinf(smartFloatValue(u"1e39")));
  EXPECT_TRUE(std::isinf(smartFloatValue(u"-1e9999")));
  EXPECT_LT(smartFloatValue(u"-1e9999"), 0);
  EXPECT_EQ(smartFloatValue(u"1e-9999"), 0.0F);
}

TEST(SmartFloatValue, DoesNotDependOnTheLocale) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  for (const char* locale : {"de_DE.UTF-8", "fr_FR.UTF-8", "C.UTF-8"}) {
    std::setlocale(LC_ALL, locale);
    EXPECT_FLOAT_EQ(smartFloatValue(u"1,5"), 1.5F);
  }
  std::setlocale(LC_ALL, before.c_str());
}

}  // namespace
}  // namespace kr
