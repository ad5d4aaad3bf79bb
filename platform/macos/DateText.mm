#import "platform/cocoa/DateText.h"

namespace kr::platform {

NSString* dateText(NSDate* date, NSString* calendarFormat) {
  return [date descriptionWithCalendarFormat:calendarFormat
                                    timeZone:[NSTimeZone defaultTimeZone]
                                      locale:[NSLocale currentLocale]];
}

}  // namespace kr::platform
