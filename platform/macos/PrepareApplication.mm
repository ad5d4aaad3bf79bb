#import "platform/cocoa/PrepareApplication.h"

#import "platform/cocoa/Mirror.h"

namespace kr::platform {

// AppKit here has the look and the defaults that the application expects.
void prepareApplication() {}

// The reader of user-interface files here takes all that they say. What stands at fixed places stays there in
// every language.
void finishWindow(NSWindow* window) {
  if ([NSApp userInterfaceLayoutDirection] == NSUserInterfaceLayoutDirectionRightToLeft) {
    mirror([window contentView]);
  }
}

}  // namespace kr::platform
