#include <atomic>

#import "library/process/KRProcess.h"

NSString* const KRProcessChangeNotification = @"KRProcessChangeNotification";

namespace {

std::atomic<bool> notificationsInstalled = false;
std::atomic<unsigned> appLaunchEndCount = 0;

}  // namespace

@implementation KRProcess (Notifications)

+ (void)installNotifications {
  notificationsInstalled = true;
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
