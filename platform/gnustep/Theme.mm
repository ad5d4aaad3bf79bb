#import "platform/gnustep/Theme.h"

#include <cmath>

#import "platform/gnustep/ThemeColors.h"

using kr::theme::color;

namespace {

constexpr CGFloat kButtonRadius = 6;
constexpr CGFloat kBarHeight = 6;
constexpr CGFloat kScrollerWidth = 12;
constexpr double kBarSteps = 40;        // of the animation, for one way of the moving part
constexpr double kBarMovingPart = 0.3;  // of the bar's length

NSBezierPath* rounded(NSRect rect, CGFloat radius) {
  return [NSBezierPath bezierPathWithRoundedRect:rect xRadius:radius yRadius:radius];
}

void fill(NSBezierPath* path, int value) {
  [color(value) set];
  [path fill];
}

void outline(NSBezierPath* path, int value) {
  [color(value) set];
  [path stroke];
}

bool isPressed(GSThemeControlState state) {
  return state == GSThemeHighlightedState || state == GSThemeHighlightedFirstResponderState;
}

// The button that Return presses.
bool isDefault(NSCell* cell) {
  return [cell isKindOfClass:[NSButtonCell class]] && [cell isEnabled] &&
         [[static_cast<NSButtonCell*>(cell) keyEquivalent] isEqualToString:@"\r"];
}

void frame(NSRect rect, int surface) {
  if (surface >= 0) {
    [color(surface) set];
    NSRectFill(rect);
  }
  [color(kr::theme::kLine) set];
  NSFrameRect(rect);
}

}  // namespace

@implementation KRTheme

+ (void)install {
  NSBundle* bundle = [NSBundle mainBundle];
  [GSTheme setTheme:[[[self alloc] initWithBundle:bundle] autorelease]];
}

- (void)dealloc {
  [systemColors release];
  [super dealloc];
}

// The toolkit compares the name with the user default, and puts its own theme back when they differ.
- (NSString*)name {
  return @"GNUstep";
}

- (NSColorList*)colors {
  if (systemColors == nil) {
    systemColors = [[NSColorList alloc] initWithName:@"System"];
    for (const kr::theme::SystemColor& entry : kr::theme::kSystemColors) {
      [systemColors setColor:color(entry.value) forKey:entry.name];
    }
  }
  return systemColors;
}

- (void)drawButton:(NSRect)rect
                in:(NSCell*)cell
              view:(NSView*)view
             style:(int)style
             state:(GSThemeControlState)state {
  const NSRect inside = NSInsetRect(rect, 1.5, 1.5);
  if (style == NSHelpButtonBezelStyle) {
    [self drawHelpButton:inside pressed:isPressed(state)];
  } else if (style == NSRoundedBezelStyle) {
    NSBezierPath* path = rounded(inside, kButtonRadius);
    if (isDefault(cell)) {
      fill(path, isPressed(state) ? kr::theme::kAccentPressed : kr::theme::kAccent);
    } else {
      fill(path, isPressed(state) ? kr::theme::kSurfacePressed : kr::theme::kSurface);
      outline(path, kr::theme::kLine);
    }
  } else {
    [super drawButton:rect in:cell view:view style:style state:state];
  }
}

- (void)drawHelpButton:(NSRect)rect pressed:(bool)pressed {
  NSBezierPath* path = [NSBezierPath bezierPathWithOvalInRect:rect];
  fill(path, pressed ? kr::theme::kSurfacePressed : kr::theme::kSurface);
  outline(path, kr::theme::kLine);
  NSDictionary* attributes = @{
    NSFontAttributeName : [NSFont boldSystemFontOfSize:13],
    NSForegroundColorAttributeName : color(kr::theme::kText)
  };
  const NSSize size = [@"?" sizeWithAttributes:attributes];
  [@"?" drawAtPoint:NSMakePoint(NSMidX(rect) - size.width / 2, NSMidY(rect) - size.height / 2)
      withAttributes:attributes];
}

// A focused button shows it by its ring; the default button needs none, as its fill says what Return does.
- (void)drawFocusFrame:(NSRect)rect view:(NSView*)view {
  if ([view isKindOfClass:[NSButton class]] && isDefault([static_cast<NSButton*>(view) cell])) return;
  NSBezierPath* path = rounded(NSInsetRect(rect, 2, 2), kButtonRadius - 1);
  [path setLineWidth:2];
  outline(path, kr::theme::kAccent);
}

- (NSRect)drawGrayBezel:(NSRect)border withClip:(NSRect)clip {
  frame(border, -1);
  return NSInsetRect(border, 1, 1);
}

- (NSRect)drawWhiteBezel:(NSRect)border withClip:(NSRect)clip {
  frame(border, kr::theme::kSurface);
  return NSInsetRect(border, 1, 1);
}

- (void)drawProgressIndicator:(NSProgressIndicator*)progress
                   withBounds:(NSRect)bounds
                     withClip:(NSRect)rect
                      atCount:(int)count
                     forValue:(double)value {
  NSRect bar = NSMakeRect(NSMinX(bounds), NSMidY(bounds) - kBarHeight / 2, NSWidth(bounds), kBarHeight);
  fill(rounded(bar, kBarHeight / 2), kr::theme::kTrack);
  if ([progress isIndeterminate]) {
    const double way = std::fmod(count / kBarSteps, 2.0);
    const double position = way < 1 ? way : 2 - way;
    const CGFloat length = NSWidth(bar) * kBarMovingPart;
    bar.origin.x += position * (NSWidth(bar) - length);
    bar.size.width = length;
  } else {
    bar.size.width *= value;
  }
  fill(rounded(bar, kBarHeight / 2), kr::theme::kAccent);
}

- (float)defaultScrollerWidth {
  return kScrollerWidth;
}

@end
