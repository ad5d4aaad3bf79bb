#import "platform/cocoa/PrepareApplication.h"

#include <stdlib.h>

#import "platform/gnustep/Theme.h"

namespace kr::platform {
namespace {

// What the application registers before the toolkit reads it; the user's own settings win.
NSDictionary* defaults() {
  NSMutableDictionary* values = [NSMutableDictionary dictionaryWithDictionary:@{
    @"NSFontSize" : @"13",
    // No tile for the running application, no floating menu, and frames by the window manager.
    @"GSSuppressAppIcon" : @"YES",
    @"NSMenuInterfaceStyle" : @"NSWindows95InterfaceStyle",
    @"NSScrollViewInterfaceStyle" : @"NSWindows95InterfaceStyle",
    @"GSScrollViewNoInnerBorder" : @"YES",
    @"GSX11HandlesWindowDecorations" : @"YES",
    // The keys of this keyboard that stand for Option, Command and Control.
    @"GSFirstAlternateKey" : @"Alt_L",
    @"GSSecondAlternateKey" : @"Alt_R",
    @"GSFirstCommandKey" : @"Control_L",
    @"GSSecondCommandKey" : @"Control_R",
    @"GSFirstControlKey" : @"Super_L",
    @"GSSecondControlKey" : @"Super_R"
  }];
  for (NSString* name in @[
         @"NSFont", @"NSUserFont", @"NSLabelFont", @"NSMessageFont", @"NSControlContentFont", @"NSMenuFont",
         @"NSToolTipsFont"
       ]) {
    [values setObject:@"Inter-Regular" forKey:name];
  }
  for (NSString* name in @[ @"NSBoldFont", @"NSTitleBarFont", @"NSPaletteFont" ]) {
    [values setObject:@"Inter-Bold" forKey:name];
  }
  return values;
}

// Labels of the file lose their bold fonts and their being no input fields on the way.
void finishLabels(NSView* view) {
  for (NSView* child in [view subviews]) {
    if ([child isKindOfClass:[NSTextField class]]) {
      NSTextField* field = static_cast<NSTextField*>(child);
      [field setEditable:NO];
      [field setBordered:NO];
      [field setBezeled:NO];
      [field setDrawsBackground:NO];
    } else if ([child isKindOfClass:[NSProgressIndicator class]]) {
      [static_cast<NSProgressIndicator*>(child) setDisplayedWhenStopped:NO];
    } else if ([child isKindOfClass:[NSTabView class]]) {
      for (NSTabViewItem* item in [static_cast<NSTabView*>(child) tabViewItems]) finishLabels([item view]);
    }
    finishLabels(child);
  }
}

}  // namespace

void prepareApplication() {
  @autoreleasepool {
    // File names and texts are UTF-8 whatever the locale is.
    ::setenv("GNUSTEP_STRING_ENCODING", "NSUTF8StringEncoding", 0);
    [[NSUserDefaults standardUserDefaults] registerDefaults:defaults()];
    [NSApplication sharedApplication];
    [KRTheme install];
  }
}

void finishWindow(NSWindow* window) {
  finishLabels([window contentView]);
}

}  // namespace kr::platform
