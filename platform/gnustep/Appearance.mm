#import "platform/gnustep/Appearance.h"

#include <objc/runtime.h>

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

// What was set to be the current appearance where nothing draws, and by the view that draws. Both retained.
NSAppearance* gOutside;
NSAppearance* gInFocus;
// The view that has set the latter. Not owned: it is forgotten when the view gives up the focus.
const void* gFocus;

void assign(NSAppearance*& variable, NSAppearance* appearance) {
  [appearance retain];
  [variable release];
  variable = appearance;
}

void keepInFocus(NSView* focus, NSAppearance* appearance) {
  assign(gInFocus, appearance);
  gFocus = appearance == nil ? nullptr : focus;
}

using UnlockFocus = void (*)(NSView*, SEL, BOOL);

UnlockFocus gUnlockFocus;

void unlockFocus(NSView* view, SEL selector, BOOL flush) {
  if (view == gFocus) keepInFocus(nil, nil);
  gUnlockFocus(view, selector, flush);
}

// All ways to give up the focus lead through one method.
void noticeEndsOfDrawing() {
  if (gUnlockFocus != nullptr) return;
  Method method = class_getInstanceMethod([NSView class], @selector(unlockFocusNeedsFlush:));
  gUnlockFocus =
      reinterpret_cast<UnlockFocus>(method_setImplementation(method, reinterpret_cast<IMP>(unlockFocus)));
}

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
  if (focus == nil) return gOutside;
  return focus == gFocus ? gInFocus : [focus effectiveAppearance];
}

// Whoever puts back what was in force in a view lets the view decide again.
+ (void)setCurrentAppearance:(NSAppearance*)appearance {
  NSView* focus = [NSView focusView];
  if (focus == nil) {
    assign(gOutside, appearance);
    return;
  }
  noticeEndsOfDrawing();
  const bool isTheViews = [[appearance name] isEqualToString:[[focus effectiveAppearance] name]];
  keepInFocus(focus, isTheViews ? nil : appearance);
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
