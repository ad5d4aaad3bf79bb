#import <AppKit/AppKit.h>

#include "library/utilities/DarkMode.h"
#import "library/utilities/KRUtilities.h"
#include "library/utilities/TintImageName.h"
#import "platform/cocoa/Bridging.h"

@implementation KRUtilities (Appearance)

+ (void)darkModeChanged:(NSNotification*)notification {
}

+ (BOOL)darkMenuTheme {
  return kr::menuThemeIsDark();
}

+ (BOOL)darkAppearance {
  return kr::appearanceIsDark();
}

+ (NSImage*)systemTintImage {
  const std::string name = kr::tintImageName([NSColor currentControlTint] == NSBlueControlTint);
  return [NSImage imageNamed:kr::toNSString(name)];
}

@end
