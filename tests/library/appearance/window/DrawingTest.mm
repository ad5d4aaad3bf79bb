// Views that draw with dynamic colours, in light and dark and over a change.
#import "library/appearance/KRDynamicColor.h"
#import "library/appearance/KRViewExtensions.h"
#include "platform/Services.h"
#import "platform/gnustep/Appearance.h"
#include "platform/testing/FixedDesktop.h"
#import "tests/support/DrawnWindow.h"
#include "tests/support/ReplacedMethod.h"

using kr::testing::DrawnWindow;

// Fills itself with a colour.
@interface KRSwatch : NSView {
 @public
  NSColor* color;  // not owned
}
@end

@implementation KRSwatch

- (void)drawRect:(NSRect)rect {
  [color set];
  NSRectFill([self bounds]);
}

- (void)themeChanged:(NSNotification*)notification {
  [self setNeedsDisplay:YES];
}

@end

@interface KRFilledSwatch : KRSwatch
@end

@implementation KRFilledSwatch

- (void)drawRect:(NSRect)rect {
  [[NSColor yellowColor] set];
  [color setFill];
  [[NSBezierPath bezierPathWithRect:[self bounds]] fill];
}

@end

@interface KRStrokedSwatch : KRSwatch
@end

@implementation KRStrokedSwatch

- (void)drawRect:(NSRect)rect {
  [[NSColor yellowColor] set];
  [color setStroke];
  NSBezierPath* path =
      [NSBezierPath bezierPathWithRect:NSInsetRect([self bounds], NSWidth([self bounds]) / 2, 0)];
  [path setLineWidth:NSWidth([self bounds])];
  [path stroke];
}

@end

namespace kr::testing {
namespace {

constexpr int kLight = 0xFF0000;
constexpr int kDark = 0x0000FF;

NSNotificationCenter* ownCenter(Class, SEL) {
  static NSNotificationCenter* center = [[NSNotificationCenter alloc] init];
  return center;
}

class DynamicDrawing : public DrawnWindow {
 protected:
  DynamicDrawing()
      : center_(ReplacedMethod::ofClass([NSDistributedNotificationCenter class], @selector(defaultCenter),
                                        ownCenter)) {
    platform::Services set = platform::services();
    set.desktopAppearance = &desktopAppearance_;
    set.systemVersion = &system_;
    services_.emplace(set);
  }
  ~DynamicDrawing() override { [NSApp setAppearance:nil]; }

  KRDynamicColor* color(BOOL global) {
    return [KRDynamicColor lightColor:[NSColor colorWithCalibratedRed:1 green:0 blue:0 alpha:1]
                            darkColor:[NSColor colorWithCalibratedRed:0 green:0 blue:1 alpha:1]
                               global:global];
  }

  KRSwatch* swatch(BOOL global, CGFloat x = 0, Class type = [KRSwatch class]) {
    KRSwatch* view = add<KRSwatch>(type, NSMakeRect(x, 0, 50, 50));
    view->color = color(global);
    return view;
  }

  // What the view has drawn by now in the course of events.
  static bool comesToShow(NSView* view, int color) {
    return runUntil([=] { return shownColor(view) == color; }, 5);
  }

  static NSAppearance* light() { return [NSAppearance appearanceNamed:NSAppearanceNameAqua]; }
  static NSAppearance* dark() { return [NSAppearance appearanceNamed:NSAppearanceNameDarkAqua]; }

  platform::testing::FixedDesktopAppearance desktopAppearance_;
  platform::testing::FixedSystemVersion system_;

 private:
  ReplacedMethod center_;
  std::optional<platform::ScopedServices> services_;
};

TEST_F(DynamicDrawing, FollowsTheAppearanceOfItsView) {
  KRSwatch* inherits = swatch(NO);
  KRSwatch* isLight = swatch(NO, 60);
  KRSwatch* isDark = swatch(NO, 120);
  [isLight setAppearance:light()];
  [isDark setAppearance:dark()];
  show();
  EXPECT_EQ(shownColor(inherits), kLight);
  EXPECT_EQ(shownColor(isLight), kLight);
  EXPECT_EQ(shownColor(isDark), kDark);
  EXPECT_EQ([NSAppearance currentAppearance], nil) << "nothing draws any more";
}

TEST_F(DynamicDrawing, FollowsTheDesktopWhereNoViewSaysOtherwise) {
  desktopAppearance_.dark = true;
  KRSwatch* inherits = swatch(NO);
  KRSwatch* isLight = swatch(NO, 60);
  [isLight useLightAquaAppearance:YES];
  show();
  EXPECT_EQ(shownColor(inherits), kDark);
  EXPECT_EQ(shownColor(isLight), kLight);
  EXPECT_EQ([color(NO) blueComponent], 1) << "nothing draws: the application's appearance";
}

TEST_F(DynamicDrawing, FollowsTheWindowAndTheApplication) {
  KRSwatch* view = swatch(NO);
  show();
  [window_ setAppearance:dark()];
  EXPECT_TRUE(comesToShow(view, kDark));
  [window_ setAppearance:nil];
  EXPECT_TRUE(comesToShow(view, kLight));
  [NSApp setAppearance:dark()];
  EXPECT_TRUE(comesToShow(view, kDark));
  EXPECT_EQ([color(NO) blueComponent], 1);
  [NSApp setAppearance:nil];
  EXPECT_TRUE(comesToShow(view, kLight));
}

TEST_F(DynamicDrawing, ByAGlobalColorFollowsTheDesktopInEveryView) {
  KRSwatch* isLight = swatch(YES);
  KRSwatch* isDark = swatch(YES, 60);
  [isLight setAppearance:light()];
  [isDark setAppearance:dark()];
  show();
  EXPECT_EQ(shownColor(isLight), kLight);
  EXPECT_EQ(shownColor(isDark), kLight);
  desktopAppearance_.dark = true;
  [window_ display];
  EXPECT_EQ(shownColor(isLight), kDark);
  EXPECT_EQ(shownColor(isDark), kDark);
}

TEST_F(DynamicDrawing, ChangesWithTheDesktopWhileTheApplicationRuns) {
  KRSwatch* global = swatch(YES);
  KRSwatch* inContext = swatch(NO, 60);
  KRSwatch* fixed = swatch(NO, 120);
  [fixed useLightAquaAppearance:YES];
  for (KRSwatch* view : {global, inContext, fixed}) {
    [view registerDarkModeNotifications:@selector(themeChanged:)];
  }
  show();
  for (const int expected : {kLight, kDark, kLight}) {
    desktopAppearance_.dark = expected == kDark;
    [ownCenter(nil, nullptr) postNotificationName:@"AppleInterfaceThemeChangedNotification" object:nil];
    EXPECT_TRUE(comesToShow(global, expected));
    EXPECT_TRUE(comesToShow(inContext, expected));
    EXPECT_EQ(shownColor(fixed), kLight);
  }
  for (KRSwatch* view : {global, inContext, fixed}) [view unregisterDarkModeNotifications];
}

TEST_F(DynamicDrawing, FillsAndStrokes) {
  KRSwatch* fill = swatch(NO, 0, [KRFilledSwatch class]);
  KRSwatch* stroke = swatch(NO, 60, [KRStrokedSwatch class]);
  show();
  EXPECT_EQ(shownColor(fill), kLight);
  EXPECT_EQ(shownColor(stroke), kLight);
  [window_ setAppearance:dark()];
  EXPECT_TRUE(comesToShow(fill, kDark));
  EXPECT_TRUE(comesToShow(stroke, kDark));
}

TEST_F(DynamicDrawing, IsLightBeforeMojave) {
  system_.appKit = 1561;
  desktopAppearance_.dark = true;
  KRSwatch* global = swatch(YES);
  KRSwatch* inContext = swatch(NO, 60);
  [inContext setAppearance:dark()];
  show();
  EXPECT_EQ(shownColor(global), kLight);
  EXPECT_EQ(shownColor(inContext), kLight);
}

TEST_F(DynamicDrawing, WorksAsTheColorOfTextsAndBackgrounds) {
  NSTextField* label = add<NSTextField>([NSTextField class], NSMakeRect(0, 0, 100, 40));
  [label setBezeled:NO];
  [label setBordered:NO];
  [label setDrawsBackground:YES];
  [label setBackgroundColor:color(NO)];
  [label setTextColor:color(NO)];
  [window_ setAppearance:dark()];
  show();
  EXPECT_EQ(shownColor(label), kDark);
  [window_ setAppearance:nil];
  EXPECT_TRUE(comesToShow(label, kLight));
}

}  // namespace
}  // namespace kr::testing
