#import "library/utilities/KRUtilities.h"

#import "library/process/KRProcess.h"
#include "library/utilities/Polling.h"
#include "platform/Log.h"
#import "platform/cocoa/Bridging.h"

namespace {

constexpr double kPauseBetweenWakeUps = 0.000001;

BOOL isInFront(KRProcess* process) {
  KRProcess* front = [KRProcess frontProcess];
  return front == process || [front isEqual:process];
}

void handFocusBack(BOOL staysBehind) {
  KRProcess* previous = [KRProcess frontProcess];
  [KRUtilities openFile:[[NSBundle mainBundle] pathForResource:@"Micro" ofType:@"app"]];
  const int polls = kr::pollsUntil([previous] { return !isInFront(previous); });
  kr::log("wait count (Micro) = %d", polls);
  [previous wakeUp];
  kr::platform::services().clock->sleep(kPauseBetweenWakeUps);
  [previous wakeUp];
  if (!staysBehind) [previous setFrontProcessFrontWindowOnly];
  static_cast<void>(kr::pollsUntil([previous] { return isInFront(previous); }));
}

}  // namespace

@implementation KRUtilities (Micro)

+ (void)launchMicro:(BOOL)staysBehind {
  @try {
    if (![self fullScreenMode]) handFocusBack(staysBehind);
  } @catch (NSException* exception) {
    kr::log("** Error while running Micro: %@", kr::toBytes([exception description]));
  }
}

@end
