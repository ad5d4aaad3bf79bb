#include "library/text/DateExtensions.h"
#include "library/utilities/DailyPeriod.h"
#import "library/utilities/KRUtilities.h"
#include "library/utilities/SystemLevels.h"
#include "platform/Clock.h"
#include "platform/DoNotDisturb.h"
#include "platform/Services.h"
#include "platform/UserInput.h"

namespace {

int minuteOfDay() {
  NSDate* now = [NSDate dateWithTimeIntervalSince1970:kr::platform::services().clock->wallSeconds()];
  NSDateComponents* time = [now gregorianDateComponents:NSCalendarUnitHour | NSCalendarUnitMinute];
  return static_cast<int>([time hour] * 60 + [time minute]);
}

}  // namespace

@implementation KRUtilities (Attention)

+ (float)idleTime {
  const auto idle = kr::platform::services().userInput->idleTime();
  return idle ? static_cast<float>(static_cast<double>(idle->count()) / 1e9) : -1.0F;
}

+ (BOOL)doNotDisturbMode {
  if (!kr::isOfLevel(kr::SystemLevel::mojaveOrNewer)) return NO;
  kr::platform::DoNotDisturb& wish = *kr::platform::services().doNotDisturb;
  if (wish.isOn()) return YES;
  const auto schedule = wish.schedule();
  return schedule && kr::isInDailyPeriod(minuteOfDay(), schedule->start, schedule->end);
}

+ (BOOL)displayIsZoomed {
  return NO;
}

@end
