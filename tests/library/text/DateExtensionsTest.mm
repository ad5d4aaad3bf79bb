#import "library/text/DateExtensions.h"

#include <gtest/gtest.h>

namespace {

// With a default time zone of the test's own.
class DateExtensions : public ::testing::Test {
 protected:
  ~DateExtensions() override {
    [NSTimeZone setDefaultTimeZone:before_];
    [before_ release];
    [pool_ drain];
  }

  static void useZone(NSInteger hoursEast) {
    [NSTimeZone setDefaultTimeZone:[NSTimeZone timeZoneForSecondsFromGMT:hoursEast * 3600]];
  }

  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
  NSTimeZone* before_ = [[NSTimeZone defaultTimeZone] retain];
  // 1 January 2020, 02:30:15 in Greenwich.
  NSDate* newYear_ = [NSDate dateWithTimeIntervalSince1970:1577845815];
};

TEST_F(DateExtensions, YearIsThatOfTheDefaultTimeZone) {
  useZone(0);
  EXPECT_EQ([newYear_ year], 2020);
  useZone(-5);
  EXPECT_EQ([newYear_ year], 2019);
  useZone(5);
  EXPECT_EQ([newYear_ year], 2020);
  EXPECT_EQ([[NSDate dateWithTimeIntervalSince1970:1577836800 - 1] year], 2020)
      << "half past one in the zone";
}

TEST_F(DateExtensions, GregorianCalendarIsSharedByAllDates) {
  NSCalendar* calendar = [newYear_ gregorianCalendar];
  EXPECT_NE(calendar, nil);
  EXPECT_EQ([[NSDate date] gregorianCalendar], calendar);
  EXPECT_TRUE([[calendar calendarIdentifier] isEqual:NSCalendarIdentifierGregorian]);
}

TEST_F(DateExtensions, GregorianDateComponentsAreThoseOfTheFlags) {
  useZone(0);
  [[newYear_ gregorianCalendar] setTimeZone:[NSTimeZone defaultTimeZone]];
  const NSCalendarUnit flags = NSCalendarUnitYear | NSCalendarUnitMonth | NSCalendarUnitDay |
                               NSCalendarUnitHour | NSCalendarUnitMinute | NSCalendarUnitSecond;
  NSDateComponents* components = [newYear_ gregorianDateComponents:flags];
  EXPECT_EQ([components year], 2020);
  EXPECT_EQ([components month], 1);
  EXPECT_EQ([components day], 1);
  EXPECT_EQ([components hour], 2);
  EXPECT_EQ([components minute], 30);
  EXPECT_EQ([components second], 15);
  components = [newYear_ gregorianDateComponents:NSCalendarUnitHour];
  EXPECT_EQ([components hour], 2);
  EXPECT_NE([components year], 2020) << "not asked for";
}

TEST_F(DateExtensions, LocalDescriptionIsThatOfTheDateInTheDefaultTimeZone) {
  useZone(0);
  EXPECT_STREQ([[newYear_ localDescription] UTF8String], "2020-01-01 02:30:15 +0000");
  useZone(-5);
  EXPECT_STREQ([[newYear_ localDescription] UTF8String], "2019-12-31 21:30:15 -0500");
}

// What a formatter prints with these styles; the locale is the user's.
NSString* formatted(NSDate* date, NSDateFormatterStyle dateStyle, NSDateFormatterStyle timeStyle) {
  NSDateFormatter* formatter = [[[NSDateFormatter alloc] init] autorelease];
  [formatter setDateStyle:dateStyle];
  [formatter setTimeStyle:timeStyle];
  return [formatter stringFromDate:date];
}

TEST_F(DateExtensions, StylesAreThoseOfAFormatter) {
  useZone(0);
  const NSDateFormatterStyle styles[] = {NSDateFormatterShortStyle, NSDateFormatterMediumStyle,
                                         NSDateFormatterLongStyle, NSDateFormatterFullStyle};
  for (const NSDateFormatterStyle style : styles) {
    NSString* date = [newYear_ descriptionWithDateStyle:style];
    NSString* time = [newYear_ descriptionWithTimeStyle:style];
    NSString* both = [newYear_ descriptionWithDateAndTimeStyle:style];
    EXPECT_TRUE([date isEqual:formatted(newYear_, style, NSDateFormatterNoStyle)]);
    EXPECT_TRUE([time isEqual:formatted(newYear_, NSDateFormatterNoStyle, style)]);
    EXPECT_TRUE([both isEqual:formatted(newYear_, style, style)]);
    // A formatter without a style prints numbers of both: these must be told from that.
    EXPECT_EQ([date rangeOfString:@"30"].location, NSNotFound) << [date UTF8String];
    EXPECT_EQ([time rangeOfString:@"20"].location, NSNotFound) << [time UTF8String];
    EXPECT_NE([both rangeOfString:@"20"].location, NSNotFound) << [both UTF8String];
    EXPECT_NE([both rangeOfString:@"30"].location, NSNotFound) << [both UTF8String];
  }
}

TEST_F(DateExtensions, WithoutAStyleThereIsNoText) {
  EXPECT_STREQ([[newYear_ descriptionWithDateStyle:NSDateFormatterNoStyle] UTF8String], "");
  EXPECT_STREQ([[newYear_ descriptionWithTimeStyle:NSDateFormatterNoStyle] UTF8String], "");
  EXPECT_STREQ([[newYear_ descriptionWithDateAndTimeStyle:NSDateFormatterNoStyle] UTF8String], "");
}

}  // namespace
