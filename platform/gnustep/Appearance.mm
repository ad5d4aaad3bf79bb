#import "platform/gnustep/Appearance.h"

#include "platform/DesktopAppearance.h"
#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"
#include "platform/gnustep/AppearanceNames.h"
#import "platform/gnustep/ResponderValues.h"

using kr::platform::responderValue;
using kr::platform::setResponderValue;

namespace {

constexpr char kAppearance = 0;

// Of the whole desktop.
NSAppearance* desktopAppearance() {
  static NSAppearance* light = [[NSAppearance appearanceNamed:NSAppearanceNameAqua] retain];
  static NSAppearance* dark = [[NSAppearance appearanceNamed:NSAppearanceNameDarkAqua] retain];
  return kr::platform::services().desktopAppearance->isDark() ? dark : light;
}

// The appearance that was set to be the current one, retained, and the view that had the focus then.
NSAppearance* gCurrent;
const void* gFocusOfCurrent;

}  // namespace

#pragma clang diagnostic push
// Which is what is meant: on this runtime the methods of a category that is loaded later win.
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"

@implementation NSAppearance (KRDrawing)

// GNUstep's finds none.
- (NSAppearanceName)bestMatchFromAppearancesWithNames:(NSArray*)names {
  NSString* name = [self name];
  while (name != nil && ![names containsObject:name]) {
    const auto plainer = kr::platform::plainerAppearance(kr::toBytes(name));
    name = plainer ? kr::toNSString(*plainer) : nil;
  }
  return name;
}

// GNUstep's is the one that was set, whatever draws.
+ (NSAppearance*)currentAppearance {
  NSView* focus = [NSView focusView];
  return focus == gFocusOfCurrent ? gCurrent : [focus effectiveAppearance];
}

// Whoever puts back what was in force in a view lets the view decide again.
+ (void)setCurrentAppearance:(NSAppearance*)appearance {
  NSView* focus = [NSView focusView];
  const bool isTheViews =
      focus != nil && [[appearance name] isEqualToString:[[focus effectiveAppearance] name]];
  NSAppearance* previous = gCurrent;
  gCurrent = isTheViews ? nil : [appearance retain];
  gFocusOfCurrent = gCurrent == nil ? nullptr : focus;
  [previous release];
}

@end

#pragma clang diagnostic pop

@implementation NSResponder (KRAppearance)

- (NSAppearance*)appearance {
  return responderValue(self, &kAppearance);
}

@end

@implementation NSView (KRAppearance)

- (void)setAppearance:(NSAppearance*)appearance {
  setResponderValue(self, &kAppearance, appearance);
  [self setNeedsDisplay:YES];
}

- (NSAppearance*)effectiveAppearance {
  NSAppearance* own = [self appearance];
  if (own != nil) return own;
  if ([self superview] != nil) return [[self superview] effectiveAppearance];
  return [self window] != nil ? [[self window] effectiveAppearance] : [NSApp effectiveAppearance];
}

@end

@implementation NSWindow (KRAppearance)

- (void)setAppearance:(NSAppearance*)appearance {
  setResponderValue(self, &kAppearance, appearance);
  [[[self contentView] superview] setNeedsDisplay:YES];
}

- (NSAppearance*)effectiveAppearance {
  NSAppearance* own = [self appearance];
  return own != nil ? own : [NSApp effectiveAppearance];
}

@end

@implementation NSApplication (KRAppearance)

- (void)setAppearance:(NSAppearance*)appearance {
  setResponderValue(self, &kAppearance, appearance);
  for (NSWindow* window in [self windows]) [[[window contentView] superview] setNeedsDisplay:YES];
}

- (NSAppearance*)effectiveAppearance {
  NSAppearance* own = [self appearance];
  return own != nil ? own : desktopAppearance();
}

@end
