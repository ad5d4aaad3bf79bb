#import "platform/gnustep/Theme.h"

#include <cmath>

#import "platform/gnustep/DefaultButton.h"
#import "platform/gnustep/ThemeColors.h"

using kr::theme::color;
using kr::theme::kButtonMargin;
using kr::theme::palette;
using kr::theme::Palette;
using kr::theme::paletteFor;

namespace {

constexpr CGFloat kButtonRadius = 6;
constexpr CGFloat kBarHeight = 6;
constexpr CGFloat kScrollerWidth = 14;
constexpr CGFloat kKnobInset = 3;
constexpr double kBarSteps = 40;        // of the animation, for one way of the moving part
constexpr double kBarMovingPart = 0.3;  // of the bar's length

NSBezierPath* rounded(NSRect rect, CGFloat radius) {
  return [NSBezierPath bezierPathWithRoundedRect:rect xRadius:radius yRadius:radius];
}

NSRect pushButtonRect(NSRect frame) {
  return NSInsetRect(frame, kButtonMargin - 0.5, 1.5);
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

void frame(NSRect rect) {
  [color(palette().line) set];
  NSFrameRect(rect);
}

}  // namespace

@implementation KRTheme

+ (void)installDark:(BOOL)dark {
  kr::theme::setPalette(dark ? kr::theme::kDark : kr::theme::kLight);
  NSBundle* bundle = [NSBundle mainBundle];
  [GSTheme setTheme:[[[self alloc] initWithBundle:bundle] autorelease]];
  kr::theme::adjustButtonTitles();
  // The arrow that alerts put on their default button: its fill says as much.
  [[[[NSImage alloc] initWithSize:NSMakeSize(1, 1)] autorelease] setName:@"common_ret"];
}

// The toolkit compares the name with the user default, and puts its own theme back when they differ.
- (NSString*)name {
  return @"GNUstep";
}

- (NSColorList*)colors {
  return kr::theme::systemColorList();
}

+ (void)useDark:(BOOL)dark {
  const Palette& chosen = dark ? kr::theme::kDark : kr::theme::kLight;
  if (&chosen == &palette()) return;
  kr::theme::setPalette(chosen);
  [[NSNotificationCenter defaultCenter] postNotificationName:GSThemeDidActivateNotification
                                                      object:[GSTheme theme]];
  for (NSWindow* window in [NSApp windows]) {
    [[[window contentView] superview] setNeedsDisplay:YES];
  }
}

- (void)drawButton:(NSRect)rect
                in:(NSCell*)cell
              view:(NSView*)view
             style:(int)style
             state:(GSThemeControlState)state {
  if (style == NSHelpButtonBezelStyle) {
    [self drawHelpButton:NSInsetRect(rect, 1.5, 1.5) pressed:isPressed(state)];
  } else if ([cell isKindOfClass:[NSButtonCell class]]) {
    // The toolkit's own alerts use other styles for their push buttons, and frames without a margin.
    const bool hasMargin = style == NSRoundedBezelStyle;
    NSBezierPath* path =
        rounded(hasMargin ? pushButtonRect(rect) : NSInsetRect(rect, 1.5, 1.5), kButtonRadius);
    if (kr::theme::isDefaultButton(cell)) {
      fill(path, isPressed(state) ? palette().accentPressed : palette().accent);
    } else {
      fill(path, isPressed(state) ? palette().surfacePressed : palette().surface);
      outline(path, palette().line);
    }
  } else {
    [super drawButton:rect in:cell view:view style:style state:state];
  }
}

- (void)drawHelpButton:(NSRect)rect pressed:(bool)pressed {
  NSBezierPath* path = [NSBezierPath bezierPathWithOvalInRect:rect];
  fill(path, pressed ? palette().surfacePressed : palette().surface);
  outline(path, palette().line);
  NSDictionary* attributes = @{
    NSFontAttributeName : [NSFont boldSystemFontOfSize:13],
    NSForegroundColorAttributeName : color(palette().text)
  };
  const NSSize size = [@"?" sizeWithAttributes:attributes];
  [@"?" drawAtPoint:NSMakePoint(NSMidX(rect) - size.width / 2, NSMidY(rect) - size.height / 2)
      withAttributes:attributes];
}

// A focused button shows it by its ring; the default button needs none, as its fill says what Return does.
- (void)drawFocusFrame:(NSRect)rect view:(NSView*)view {
  NSRect around = NSInsetRect(rect, 2, 2);
  CGFloat radius = kButtonRadius - 1;
  if ([view isKindOfClass:[NSButton class]]) {
    NSButtonCell* cell = static_cast<NSButtonCell*>([static_cast<NSButton*>(view) cell]);
    if (![cell isEnabled] || kr::theme::isDefaultButton(cell)) return;
    const bool isRound = [cell bezelStyle] == NSHelpButtonBezelStyle;
    around = isRound ? NSInsetRect([view bounds], 1.5, 1.5) : pushButtonRect([view bounds]);
    radius = isRound ? NSWidth(around) / 2 : kButtonRadius;
  }
  NSBezierPath* path = rounded(around, radius);
  [path setLineWidth:2];
  outline(path, palette().focus);
}

- (void)drawScrollViewRect:(NSRect)rect inView:(NSView*)view {
  if ([static_cast<NSScrollView*>(view) borderType] == NSNoBorder) return;
  [color(paletteFor(view).line) set];
  NSFrameRect([view bounds]);
}

- (NSRect)drawGrayBezel:(NSRect)border withClip:(NSRect)clip {
  frame(border);
  return NSInsetRect(border, 1, 1);
}

- (NSRect)drawWhiteBezel:(NSRect)border withClip:(NSRect)clip {
  [color(palette().surface) set];
  NSRectFill(border);
  frame(border);
  return NSInsetRect(border, 1, 1);
}

- (void)drawProgressIndicator:(NSProgressIndicator*)progress
                   withBounds:(NSRect)bounds
                     withClip:(NSRect)rect
                      atCount:(int)count
                     forValue:(double)value {
  NSRect bar = NSMakeRect(NSMinX(bounds), NSMidY(bounds) - kBarHeight / 2, NSWidth(bounds), kBarHeight);
  fill(rounded(bar, kBarHeight / 2), palette().track);
  if ([progress isIndeterminate]) {
    const double way = std::fmod(count / kBarSteps, 2.0);
    const double position = way < 1 ? way : 2 - way;
    const CGFloat length = NSWidth(bar) * kBarMovingPart;
    bar.origin.x += position * (NSWidth(bar) - length);
    bar.size.width = length;
  } else {
    bar.size.width *= value;
  }
  fill(rounded(bar, kBarHeight / 2), palette().bar);
}

// The menu shows nowhere; its key equivalents work all the same.
- (void)setMenu:(NSMenu*)menu forWindow:(NSWindow*)window {
}

- (void)updateMenu:(NSMenu*)menu forWindow:(NSWindow*)window {
}

- (void)updateAllWindowsWithMenu:(NSMenu*)menu {
}

- (float)menuHeightForWindow:(NSWindow*)window {
  return 0;
}

// A knob on the surface of what is scrolled, without a groove or arrows.
- (void)drawScrollerRect:(NSRect)rect
                  inView:(NSView*)view
                 hitPart:(NSScrollerPart)part
            isHorizontal:(BOOL)horizontal {
  const Palette& colors = paletteFor(view);
  [color(colors.surface) set];
  NSRectFill(rect);
  NSScroller* scroller = static_cast<NSScroller*>(view);
  if (![scroller isEnabled] || [scroller knobProportion] >= 1) return;
  const NSRect knob = NSInsetRect([scroller rectForPart:NSScrollerKnob], kKnobInset, kKnobInset);
  fill(rounded(knob, (horizontal ? NSHeight(knob) : NSWidth(knob)) / 2), colors.knob);
}

- (float)defaultScrollerWidth {
  return kScrollerWidth;
}

@end
