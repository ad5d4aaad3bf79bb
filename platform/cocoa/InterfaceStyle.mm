#include "platform/cocoa/InterfaceStyle.h"

#import <Foundation/Foundation.h>

namespace kr::platform {

bool interfaceStyleIsDark() {
  @autoreleasepool {
    id style = [[NSUserDefaults standardUserDefaults] objectForKey:@"AppleInterfaceStyle"];
    return [style isKindOfClass:[NSString class]] && [style isEqualToString:@"Dark"];
  }
}

}  // namespace kr::platform
