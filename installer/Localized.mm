#import "installer/Localized.h"

#import "installer/InstallerWinController.h"
#import "platform/cocoa/Bridging.h"

namespace kr {

NSString* localized(NSString* englishText) {
  NSBundle* bundle = [NSBundle bundleForClass:[InstallerWinController class]];
  return [bundle localizedStringForKey:englishText value:@"" table:nil];
}

NSString* filled(NSString* format, NSString* value) {
  if ([format rangeOfString:@"%"].location == NSNotFound) return format;
  return [NSString stringWithFormat:format, toDisplayText(value)];
}

void localizeMenu(NSMenu* menu) {
  [menu setTitle:localized([menu title])];
  for (NSMenuItem* item in [menu itemArray]) {
    [item setTitle:localized([item title])];
    if ([item hasSubmenu]) localizeMenu([item submenu]);
  }
}

NSString* localizedFormat(NSString* englishFormat, NSString* value) {
  return filled(localized(englishFormat), value);
}

}  // namespace kr
