#include "platform/PrepareApplication.h"

#import <AppKit/AppKit.h>

namespace kr::platform {

void prepareApplication() {
  @autoreleasepool {
    [NSApplication sharedApplication];
  }
}

}  // namespace kr::platform
