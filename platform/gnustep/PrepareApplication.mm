#import "platform/cocoa/PrepareApplication.h"

#import <AppKit/AppKit.h>

namespace kr::platform {

void prepareApplication() {
  @autoreleasepool {
    [NSApplication sharedApplication];
  }
}

void finishWindow(NSWindow*) {}

}  // namespace kr::platform
