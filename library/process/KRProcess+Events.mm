#include "library/process/EventRules.h"
#import "library/process/KRProcess+Private.h"
#include "platform/AppleEvents.h"
#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"

@implementation KRProcess (Events)

- (void)sendAppleEventClass:(uint32_t)eventClass eventID:(uint32_t)eventID {
  kr::sendAndLog(kr::plainEvent(eventClass, eventID, [self unixPID]));
}

- (void)sendAppleEventClass:(uint32_t)eventClass eventID:(uint32_t)eventID timeout:(float)seconds {
  // The load of the front application is read before and after, for the side effects of reading it.
  [[KRProcess frontProcess] cpuTime];
  kr::sendAndLog(kr::waitingEvent(eventClass, eventID, [self unixPID], seconds));
  [[KRProcess frontProcess] cpuTime];
}

- (void)sendAppleEventClass:(uint32_t)eventClass eventID:(uint32_t)eventID parameter:(NSString*)text {
  // No event can be built around a text that is none.
  if (text == nil) return;
  // Nobody is told whether it arrived.
  static_cast<void>(
      kr::platform::services().appleEvents->send(kr::textEvent(eventClass, eventID, psn, kr::toBytes(text))));
}

@end
