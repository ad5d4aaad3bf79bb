// Further operations of every date, in the program's own time zone and the user's locale. Any thread, save
// for the first use of the calendar, which is on one thread.
#pragma once

#import <Foundation/Foundation.h>

#include <cstdint>

@interface NSDate (DateExtensions)

- (int32_t)year;

// One calendar for all dates, as long as the program runs.
- (NSCalendar*)gregorianCalendar;
- (NSDateComponents*)gregorianDateComponents:(NSCalendarUnit)unitFlags;

// As a date describes itself, but in the time zone of the program.
- (NSString*)localDescription;

// With date formatter styles; the style "none" gives the empty text.
- (NSString*)descriptionWithDateStyle:(NSDateFormatterStyle)style;
- (NSString*)descriptionWithTimeStyle:(NSDateFormatterStyle)style;
- (NSString*)descriptionWithDateAndTimeStyle:(NSDateFormatterStyle)style;

@end
