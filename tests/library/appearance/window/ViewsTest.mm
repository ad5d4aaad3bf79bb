// The order, the appearance, the background and the scale of views.
#include <optional>

#import "library/appearance/KRViewExtensions.h"
#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"
#import "platform/gnustep/Appearance.h"
#include "platform/testing/FixedDesktop.h"
#import "tests/support/DrawnWindow.h"

// Other programs of the user may send as well.
static NSString* ownSender() {
  return [NSString stringWithFormat:@"tests %d", [[NSProcessInfo processInfo] processIdentifier]];
}

@interface KRColoredView : NSView {
 @public
  NSColor* color;  // not owned
  int changes;
  int otherChanges;
}
@end

@implementation KRColoredView

- (void)drawRect:(NSRect)rect {
  [color set];
  NSRectFill([self bounds]);
}

- (void)themeChanged:(NSNotification*)notification {
  if (![[notification object] isEqualToString:ownSender()]) return;
  if ([[notification name] isEqualToString:@"AppleInterfaceThemeChangedNotification"]) ++changes;
}

- (void)otherChanged:(NSNotification*)notification {
  if ([[notification object] isEqualToString:ownSender()]) ++otherChanges;
}

@end

@interface KRFlippedColoredView : KRColoredView
@end

@implementation KRFlippedColoredView

- (BOOL)isFlipped {
  return YES;
}

@end

namespace kr::testing {
namespace {

NSString* const kThemeChanged = @"AppleInterfaceThemeChangedNotification";
constexpr double kHighSierra = 1561;
constexpr double kMojave = 1639;

class Views : public DrawnWindow {
 protected:
  Views() {
    platform::Services set = platform::services();
    set.systemVersion = &system_;
    services_.emplace(set);
  }

  KRColoredView* addView(NSColor* color = nil, NSRect frame = NSMakeRect(10, 20, 100, 60)) {
    KRColoredView* view = add<KRColoredView>([KRColoredView class], frame);
    view->color = color;
    return view;
  }

  static void post(NSString* name) {
    [[NSDistributedNotificationCenter defaultCenter] postNotificationName:name
                                                                   object:ownSender()
                                                                 userInfo:nil
                                                       deliverImmediately:YES];
  }

  platform::testing::FixedSystemVersion system_;

 private:
  std::optional<platform::ScopedServices> services_;
};

TEST_F(Views, ComeToTheFrontOfTheirSiblings) {
  KRColoredView* back = addView([NSColor redColor]);
  KRColoredView* middle = addView([NSColor greenColor]);
  KRColoredView* front = addView([NSColor blueColor]);
  show();
  EXPECT_EQ(shownColor(front), 0x0000FF);
  const NSUInteger count = [back retainCount];
  [back bringToFrontInsideSuperView];
  EXPECT_EQ([back retainCount], count);
  EXPECT_EQ([back superview], [window_ contentView]);
  NSArray* expected = @[ middle, front, back ];
  EXPECT_TRUE([[[window_ contentView] subviews] isEqualToArray:expected]);
  EXPECT_TRUE(NSEqualRects([back frame], NSMakeRect(10, 20, 100, 60)));
  EXPECT_TRUE(runUntil([=] { return shownColor(back) == 0xFF0000; }, 5));
  [back bringToFrontInsideSuperView];
  EXPECT_TRUE([[[window_ contentView] subviews] isEqualToArray:expected]);
}

TEST_F(Views, WithoutASuperviewHaveNoFrontToComeTo) {
  NSView* view = [[[NSView alloc] initWithFrame:NSMakeRect(0, 0, 10, 10)] autorelease];
  [view bringToFrontInsideSuperView];
  EXPECT_EQ([view superview], nil);
}

TEST_F(Views, AreFixedToTheLightAppearanceAndFreedAgain) {
  NSView* view = addView();
  [window_ setAppearance:[NSAppearance appearanceNamed:NSAppearanceNameDarkAqua]];
  [view useLightAquaAppearance:YES];
  EXPECT_EQ(toBytes([[view appearance] name]), toBytes(NSAppearanceNameAqua));
  EXPECT_EQ(toBytes([[view effectiveAppearance] name]), toBytes(NSAppearanceNameAqua));
  [view useLightAquaAppearance:NO];
  EXPECT_EQ([view appearance], nil);
  EXPECT_EQ(toBytes([[view effectiveAppearance] name]), toBytes(NSAppearanceNameDarkAqua));
}

TEST_F(Views, KeepTheirAppearanceBeforeMojave) {
  NSView* view = addView();
  NSAppearance* own = [NSAppearance appearanceNamed:NSAppearanceNameDarkAqua];
  [view setAppearance:own];
  system_.appKit = kHighSierra;
  [view useLightAquaAppearance:YES];
  EXPECT_EQ([view appearance], own);
  [view useLightAquaAppearance:NO];
  EXPECT_EQ([view appearance], own);
  system_.appKit = kMojave;
  [view useLightAquaAppearance:NO];
  EXPECT_EQ([view appearance], nil);
}

TEST_F(Views, HearOfChangesOfTheDesktopUntilTheyDoNotWantToAnyMore) {
  KRColoredView* view = addView();
  [[NSDistributedNotificationCenter defaultCenter] addObserver:view
                                                      selector:@selector(otherChanged:)
                                                          name:@"KRAnotherNotification"
                                                        object:nil];
  [view registerDarkModeNotifications:@selector(themeChanged:)];
  post(kThemeChanged);
  ASSERT_TRUE(runUntil([=] { return view->changes == 1; }));
  post(@"KRAnotherNotification");
  ASSERT_TRUE(runUntil([=] { return view->otherChanges == 1; }));
  EXPECT_EQ(view->changes, 1);

  [view unregisterDarkModeNotifications];
  post(kThemeChanged);
  post(@"KRAnotherNotification");
  ASSERT_TRUE(runUntil([=] { return view->otherChanges == 2; })) << "that one is still wanted";
  EXPECT_EQ(view->changes, 1);
  [[NSDistributedNotificationCenter defaultCenter] removeObserver:view];
}

TEST_F(Views, AreWrappedInAnEffectViewOnce) {
  KRColoredView* behind = addView();
  KRColoredView* view = addView([NSColor redColor]);
  KRColoredView* before = addView();
  const NSUInteger count = [view retainCount];
  EXPECT_EQ([view enclosingVisualEffectView], nil);
  NSVisualEffectView* effect = [view wrapInVisualEffectView];
  ASSERT_NE(effect, nil);
  EXPECT_TRUE([effect isMemberOfClass:[NSVisualEffectView class]]);
  EXPECT_TRUE(NSEqualRects([effect frame], NSMakeRect(10, 20, 100, 60)));
  EXPECT_TRUE(NSEqualRects([view frame], NSMakeRect(0, 0, 100, 60)));
  EXPECT_EQ([view superview], effect);
  EXPECT_EQ([effect superview], [window_ contentView]);
  NSArray* expected = @[ behind, before, effect ];
  EXPECT_TRUE([[[window_ contentView] subviews] isEqualToArray:expected]);
  EXPECT_EQ([view retainCount], count);
  EXPECT_EQ([effect material], NSVisualEffectMaterialAppearanceBased);

  EXPECT_EQ([view enclosingVisualEffectView], effect);
  EXPECT_EQ([view wrapInVisualEffectView], effect);
  EXPECT_EQ([effect superview], [window_ contentView]);
  EXPECT_TRUE(NSEqualRects([view frame], NSMakeRect(0, 0, 100, 60)));
  show();
  EXPECT_EQ(shownColor(view), 0xFF0000);
}

TEST_F(Views, AreNotWrappedBeforeMojave) {
  KRColoredView* view = addView();
  system_.appKit = kHighSierra;
  EXPECT_EQ([view wrapInVisualEffectView], nil);
  EXPECT_EQ([view superview], [window_ contentView]);
  EXPECT_TRUE(NSEqualRects([view frame], NSMakeRect(10, 20, 100, 60)));
  system_.appKit = kMojave;
  ASSERT_NE([view wrapInVisualEffectView], nil);
  system_.appKit = kHighSierra;
  EXPECT_EQ([view enclosingVisualEffectView], nil);
  EXPECT_EQ([view wrapInVisualEffectView], nil);
}

TEST_F(Views, ThatLieDeeperInAnEffectViewHaveNone) {
  KRColoredView* view = addView();
  NSVisualEffectView* effect = [view wrapInVisualEffectView];
  NSView* inner = [[[NSView alloc] initWithFrame:NSMakeRect(0, 0, 10, 10)] autorelease];
  [view addSubview:inner];
  EXPECT_EQ([inner enclosingVisualEffectView], nil);
  EXPECT_NE([inner wrapInVisualEffectView], effect);
}

// Of a class, with its beginning at the bottom or at the top.
class ScaledViews : public Views, public ::testing::WithParamInterface<bool> {
 protected:
  static Class type() { return GetParam() ? [KRFlippedColoredView class] : [KRColoredView class]; }

  KRColoredView* addView(NSColor* color = nil, NSRect frame = NSMakeRect(10, 20, 100, 60)) {
    KRColoredView* view = add<KRColoredView>(type(), frame);
    view->color = color;
    return view;
  }
};

TEST_P(ScaledViews, HaveAScaleInTheWindow) {
  KRColoredView* view = addView();
  EXPECT_EQ([view scale], 1);
  [view setScale:2];
  EXPECT_DOUBLE_EQ([view scale], 2);
  EXPECT_TRUE(NSEqualSizes([view bounds].size, NSMakeSize(50, 30)));
  [view setScale:2];
  EXPECT_DOUBLE_EQ([view scale], 2) << "not twice as much";
  [view setScale:0.5];
  EXPECT_DOUBLE_EQ([view scale], 0.5);
  EXPECT_TRUE(NSEqualSizes([view bounds].size, NSMakeSize(200, 120)));
  [view resetScaling];
  EXPECT_DOUBLE_EQ([view scale], 1);
  EXPECT_TRUE(NSEqualRects([view frame], NSMakeRect(10, 20, 100, 60))) << "its place is another matter";
}

TEST_P(ScaledViews, HaveAScaleInTheWindowWhateverTheyLieIn) {
  KRColoredView* outer = addView();
  KRColoredView* inner = [[[type() alloc] initWithFrame:NSMakeRect(0, 0, 10, 10)] autorelease];
  [outer addSubview:inner];
  [outer setScale:3];
  EXPECT_DOUBLE_EQ([inner scale], 3);
  [inner setScale:2];
  EXPECT_DOUBLE_EQ([inner scale], 2);
  EXPECT_DOUBLE_EQ([outer scale], 3);
  [outer setScale:1.5];
  EXPECT_DOUBLE_EQ([inner scale], 1) << "half as large as before";
  [inner resetScaling];
  EXPECT_DOUBLE_EQ([inner scale], 1);
  EXPECT_TRUE(NSEqualSizes([inner bounds].size, NSMakeSize(15, 15)));
}

TEST_P(ScaledViews, AreDrawnAgainInTheNewScale) {
  KRColoredView* view = addView([NSColor redColor]);
  show();
  ASSERT_FALSE([view needsDisplay]);
  [view setScale:2];
  EXPECT_TRUE([view needsDisplay]);
}

TEST_P(ScaledViews, InAScrolledAndScaledClipViewHaveItsScale) {
  NSScrollView* scrollView = add<NSScrollView>([NSScrollView class], NSMakeRect(0, 0, 200, 100));
  NSView* document = [[[type() alloc] initWithFrame:NSMakeRect(0, 0, 500, 1000)] autorelease];
  [scrollView setDocumentView:document];
  [[scrollView contentView] setBoundsOrigin:NSMakePoint(30, 300)];
  EXPECT_DOUBLE_EQ([document scale], 1);
  [[scrollView contentView] scaleUnitSquareToSize:NSMakeSize(4, 4)];
  EXPECT_DOUBLE_EQ([document scale], 4);
  [document setScale:2];
  EXPECT_DOUBLE_EQ([document scale], 2);
}

// What a flipped view draws at its beginning is seen at the top, in every scale.
TEST_P(ScaledViews, AreNotTurnedOver) {
  KRColoredView* view = addView([NSColor whiteColor]);
  KRColoredView* corner = [[[type() alloc] initWithFrame:NSMakeRect(0, 0, 10, 10)] autorelease];
  [view addSubview:corner];
  for (const double scale : {2.0, 0.5, 1.0}) {
    [view setScale:scale];
    EXPECT_GT(NSHeight([view bounds]), 0);
    EXPECT_GT(NSWidth([view bounds]), 0);
    EXPECT_TRUE(NSEqualPoints([view bounds].origin, NSZeroPoint));
    const NSRect place = [corner convertRect:[corner bounds] toView:[view superview]];
    EXPECT_NEAR(NSMinX(place), 10, 0.01);
    EXPECT_NEAR(GetParam() ? NSMaxY(place) : NSMinY(place), GetParam() ? 80 : 20, 0.01) << scale;
    EXPECT_NEAR(NSHeight(place), 10 * scale, 0.01);
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, ScaledViews, ::testing::Bool(),
                         [](const auto& info) { return std::string(info.param ? "Flipped" : "Unflipped"); });

}  // namespace
}  // namespace kr::testing
