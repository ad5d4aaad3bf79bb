// Dates as text in a calendar format. Any thread.
#pragma once

#import <Foundation/Foundation.h>

namespace kr::platform {

// The date in the program's default time zone and the user's current locale. "%Y" and the like stand for its
// parts; nil is the format in which dates describe themselves. The result is autoreleased.
[[nodiscard]] NSString* dateText(NSDate* date, NSString* calendarFormat);

}  // namespace kr::platform
