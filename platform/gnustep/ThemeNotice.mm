#import "platform/gnustep/ThemeNotice.h"

#import <AppKit/AppKit.h>
#include <objc/runtime.h>

#include "platform/DesktopAppearance.h"
#include "platform/Services.h"
#import "platform/gnustep/Theme.h"

namespace {

NSString* const kThemeChanged = @"AppleInterfaceThemeChangedNotification";

// Calls the block where the program is connected to the server of the notifications. To connect may mean to
// start that server, and to wait for it.
void withCenter(void (^use)(NSDistributedNotificationCenter*)) {
  NSDistributedNotificationCenter* center = [NSDistributedNotificationCenter defaultCenter];
  Ivar server = class_getInstanceVariable([center class], "_remote");
  if (server == nullptr || object_getIvar(center, server) == nil) return;
  @try {
    use(center);
  } @catch (NSException* serverIsGone) {
    // Nobody is left to tell or to be told by.
  }
}

}  // namespace

@interface KRThemeFollower : NSObject
@end

@implementation KRThemeFollower

// The toolkit has connected by now, where it can.
- (void)follow {
  withCenter(^(NSDistributedNotificationCenter* center) {
    [center addObserver:self selector:@selector(themeChanged:) name:kThemeChanged object:nil];
  });
}

- (void)themeChanged:(NSNotification*)notification {
  [KRTheme useDark:kr::platform::services().desktopAppearance->isDark()];
}

@end

namespace kr::theme {

void announceChange() {
  withCenter(^(NSDistributedNotificationCenter* center) {
    [center postNotificationName:kThemeChanged object:nil userInfo:nil deliverImmediately:YES];
  });
}

void followAnnouncements() {
  static KRThemeFollower* follower;
  if (follower != nil) return;
  follower = [[KRThemeFollower alloc] init];
  [follower performSelector:@selector(follow) withObject:nil afterDelay:0];
}

}  // namespace kr::theme
