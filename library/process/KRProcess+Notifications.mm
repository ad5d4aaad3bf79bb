#include <atomic>

#include "library/process/ChangeNames.h"
#import "library/process/IdlePosting.h"
#import "library/process/KRProcess.h"
#include "platform/ProcessEvents.h"
#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"

NSString* const KRProcessChangeNotification = @"KRProcessChangeNotification";

namespace {

std::atomic<bool> notificationsInstalled = false;
std::atomic<unsigned> appLaunchEndCount = 0;

// Out of the main run loop.
void applicationStartEndHandler(uint32_t kind) {
  if (kind == kr::platform::kApplicationEnded) [KRProcess applicationEnded];
  if (kind == kr::platform::kApplicationLaunched) [KRProcess applicationStarted];
  kr::postWhenIdle(KRProcessChangeNotification, [KRProcess class],
                   [NSDictionary dictionaryWithObject:kr::toNSString(kr::changeName(kind)) forKey:@"change"]);
}

}  // namespace

@implementation KRProcess (Notifications)

+ (void)startEvents {
  kr::platform::services().processEvents->start(applicationStartEndHandler);
}

+ (void)installNotifications {
  if (notificationsInstalled.exchange(true)) return;
  if ([NSThread isMainThread]) {
    [self startEvents];
  } else {
    [self performSelectorOnMainThread:@selector(startEvents) withObject:nil waitUntilDone:NO];
  }
}

+ (void)applicationStarted {
  ++appLaunchEndCount;
}

+ (void)applicationEnded {
  [self cleanupCache];
  ++appLaunchEndCount;
}

+ (unsigned)applicationLaunchEndCount {
  return appLaunchEndCount;
}

@end
