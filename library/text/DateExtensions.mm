#import "library/text/DateExtensions.h"

#import "platform/cocoa/DateText.h"

namespace {

NSString* described(NSDate* date, NSDateFormatterStyle dateStyle, NSDateFormatterStyle timeStyle) {
  // A formatter without any style is to print nothing, and does not everywhere.
  if (dateStyle == NSDateFormatterNoStyle && timeStyle == NSDateFormatterNoStyle) return @"";
  NSDateFormatter* formatter = [[NSDateFormatter alloc] init];
  [formatter setDateStyle:dateStyle];
  [formatter setTimeStyle:timeStyle];
  NSString* text = [formatter stringFromDate:date];
  [formatter release];
  return text;
}

}  // namespace

@implementation NSDate (DateExtensions)

- (int32_t)year {
  return [kr::platform::dateText(self, @"%Y") intValue];
}

- (NSCalendar*)gregorianCalendar {
  static NSCalendar* const calendar =
      [[NSCalendar alloc] initWithCalendarIdentifier:NSCalendarIdentifierGregorian];
  return calendar;
}

- (NSDateComponents*)gregorianDateComponents:(NSCalendarUnit)unitFlags {
  return [[self gregorianCalendar] components:unitFlags fromDate:self];
}

- (NSString*)localDescription {
  return kr::platform::dateText(self, nil);
}

- (NSString*)descriptionWithDateStyle:(NSDateFormatterStyle)style {
  return described(self, style, NSDateFormatterNoStyle);
}

- (NSString*)descriptionWithTimeStyle:(NSDateFormatterStyle)style {
  return described(self, NSDateFormatterNoStyle, style);
}

- (NSString*)descriptionWithDateAndTimeStyle:(NSDateFormatterStyle)style {
  return described(self, style, style);
}

@end
