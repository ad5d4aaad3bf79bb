#include "library/process/CpuTime.h"
#import "library/process/KRProcess+Private.h"
#include "platform/Clock.h"
#include "platform/Log.h"
#include "platform/ProcessTable.h"
#include "platform/Services.h"

@implementation KRProcess (Times)

- (NSDate*)launchDate {
  @synchronized(self) {
    if (launchDate != nil) return launchDate;
    const pid_t pid = [self unixPID];
    double start = 0;
    if (pid == 0) {
      kr::log("*** Cannot get launch date for %@", kr::nameForLog(self));
      start = kr::platform::services().clock->wallSeconds();
    } else {
      start = kr::processTable().startTime(pid);
    }
    launchDate = [[NSDate alloc] initWithTimeIntervalSince1970:start];
    return launchDate;
  }
}

- (double)secondsRunning {
  const double start = [[self launchDate] timeIntervalSince1970];
  // Single precision is what callers have always been given.
  return static_cast<float>(kr::platform::services().clock->wallSeconds() - start);
}

- (double)cpuTime {
  const std::optional<pid_t> pid = kr::processTable().pid(psn);
  const std::optional<std::string> text = pid ? kr::processTable().userTime(*pid) : std::nullopt;
  return text ? kr::cpuSeconds(*text) : 0.0;
}

@end
