#import "platform/cocoa/DateText.h"

namespace kr::platform {

NSString* dateText(NSDate* date, NSString* calendarFormat) {
  // A locale answers -objectForKey: for what is asked of the dictionary.
  NSDictionary* locale = static_cast<NSDictionary*>(static_cast<id>([NSLocale currentLocale]));
  return [date descriptionWithCalendarFormat:calendarFormat
                                    timeZone:[NSTimeZone defaultTimeZone]
                                      locale:locale];
}

}  // namespace kr::platform
