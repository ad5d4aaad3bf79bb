#import "library/appearance/KRViewExtensions.h"

#import "library/appearance/LaterAppKit.h"
#include "library/appearance/VerticalScroll.h"
#include "library/utilities/SystemLevels.h"

namespace {

NSString* const kThemeChanged = @"AppleInterfaceThemeChangedNotification";
constexpr NSSize kUnit{1, 1};

bool hasAppearances() {
  return kr::isOfLevel(kr::SystemLevel::mojaveOrNewer);
}

kr::VerticalSpan vertical(NSRect rect) {
  return {NSMinY(rect), NSHeight(rect)};
}

void scrollAnimated(NSScrollView* scrollView, NSPoint origin) {
  NSClipView* clip = [scrollView contentView];
  [NSAnimationContext beginGrouping];
  [[static_cast<id<KRAnimatable>>(clip) animator] setBoundsOrigin:origin];
  [NSAnimationContext endGrouping];
  [scrollView reflectScrolledClipView:clip];
}

}  // namespace

@implementation NSView (KRViewExtensions)

- (void)bringToFrontInsideSuperView {
  NSView* outer = [self superview];
  [self retain];
  [self removeFromSuperviewWithoutNeedingDisplay];
  [outer addSubview:self positioned:NSWindowAbove relativeTo:nil];
  [self release];
}

- (BOOL)animatedVerticalScrollRectToVisible:(NSRect)rect preferTop:(BOOL)preferTop {
  NSScrollView* scrollView = [self enclosingScrollView];
  if (scrollView == nil) return NO;
  const auto delta = kr::verticalScroll(vertical(rect), vertical([self visibleRect]), preferTop);
  if (!delta) return NO;
  scrollAnimated(scrollView, NSMakePoint(0, NSMinY([[scrollView contentView] bounds]) + *delta));
  return YES;
}

- (BOOL)scrollRectToVisible:(NSRect)rect animated:(BOOL)animated {
  return [self scrollRectToVisible:rect];
}

- (void)scrollPointAnimated:(NSPoint)point {
  NSScrollView* scrollView = [self enclosingScrollView];
#pragma clang diagnostic push
  // What took its place in AppKit is missing on GNUstep.
#pragma clang diagnostic ignored "-Wdeprecated-declarations"
  scrollAnimated(scrollView, [[scrollView contentView] constrainScrollPoint:point]);
#pragma clang diagnostic pop
}

- (void)useLightAquaAppearance:(BOOL)light {
  if (!hasAppearances()) return;
  NSAppearance* appearance = light ? [NSAppearance appearanceNamed:NSAppearanceNameAqua] : nil;
  [static_cast<id<KRAppearanceCustomization>>(self) setAppearance:appearance];
}

- (void)registerDarkModeNotifications:(SEL)selector {
  [[NSDistributedNotificationCenter defaultCenter] addObserver:self
                                                      selector:selector
                                                          name:kThemeChanged
                                                        object:nil];
}

- (void)unregisterDarkModeNotifications {
  [[NSDistributedNotificationCenter defaultCenter] removeObserver:self name:kThemeChanged object:nil];
}

- (NSVisualEffectView*)enclosingVisualEffectView {
  NSView* outer = [self superview];
  if (!hasAppearances() || ![outer isKindOfClass:[NSVisualEffectView class]]) return nil;
  return static_cast<NSVisualEffectView*>(outer);
}

- (NSVisualEffectView*)wrapInVisualEffectView {
  if (!hasAppearances()) return nil;
  NSVisualEffectView* enclosing = [self enclosingVisualEffectView];
  if (enclosing != nil) return enclosing;
  NSView* outer = [self superview];
  const NSRect frame = [self frame];
  NSVisualEffectView* effect = [[[NSVisualEffectView alloc] initWithFrame:frame] autorelease];
  [self retain];
  [self removeFromSuperview];
  [effect addSubview:self];
  [self setFrame:NSMakeRect(0, 0, NSWidth(frame), NSHeight(frame))];
  [outer addSubview:effect];
  [self release];
  return effect;
}

- (double)scale {
  return [self convertSize:kUnit toView:nil].width;
}

- (void)setScale:(double)scale {
  [self resetScaling];
  [self scaleUnitSquareToSize:NSMakeSize(scale, scale)];
  [self setNeedsDisplay:YES];
}

- (void)resetScaling {
  [self scaleUnitSquareToSize:[self convertSize:kUnit fromView:nil]];
}

@end
