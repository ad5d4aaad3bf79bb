#import "platform/gnustep/Appearance.h"

#include <optional>

#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"
#include "platform/testing/FixedDesktop.h"
#import "tests/support/DrawnWindow.h"

// Notes the appearance that is current when it draws.
@interface KRWitness : NSView {
 @public
  NSAppearance* seen;   // not owned
  NSAppearance* sets;   // not owned; nil: it sets none
  NSAppearance* after;  // not owned; what is current once it has set one
  BOOL putsBack;
}
@end

@implementation KRWitness

- (void)drawRect:(NSRect)rect {
  seen = [NSAppearance currentAppearance];
  if (sets == nil) return;
  [NSAppearance setCurrentAppearance:sets];
  after = [NSAppearance currentAppearance];
  if (putsBack) [NSAppearance setCurrentAppearance:seen];
}

@end

namespace kr::testing {
namespace {

class Appearances : public DrawnWindow {
 protected:
  Appearances()
      : light_([[NSAppearance appearanceNamed:NSAppearanceNameAqua] retain]),
        dark_([[NSAppearance appearanceNamed:NSAppearanceNameDarkAqua] retain]) {
    platform::Services set = platform::services();
    set.desktopAppearance = &desktopAppearance_;
    services_.emplace(set);
  }
  ~Appearances() override {
    [NSAppearance setCurrentAppearance:nil];
    [NSApp setAppearance:nil];
    [light_ release];
    [dark_ release];
  }

  static std::string name(NSAppearance* appearance) { return toBytes([appearance name]); }

  NSAppearance* light_;
  NSAppearance* dark_;
  platform::testing::FixedDesktopAppearance desktopAppearance_;

 private:
  std::optional<platform::ScopedServices> services_;
};

TEST_F(Appearances, AreInheritedFromTheDesktopInwards) {
  NSView* outer = add<NSView>([NSView class], NSMakeRect(0, 0, 100, 100));
  NSView* inner = [[[NSView alloc] initWithFrame:NSMakeRect(0, 0, 50, 50)] autorelease];
  [outer addSubview:inner];
  EXPECT_EQ(name([inner effectiveAppearance]), "NSAppearanceNameAqua");
  desktopAppearance_.dark = true;
  EXPECT_EQ(name([inner effectiveAppearance]), "NSAppearanceNameDarkAqua");
  EXPECT_EQ(name([NSApp effectiveAppearance]), "NSAppearanceNameDarkAqua");
  [NSApp setAppearance:light_];
  EXPECT_EQ([inner effectiveAppearance], light_);
  [window_ setAppearance:dark_];
  EXPECT_EQ([inner effectiveAppearance], dark_);
  [outer setAppearance:light_];
  EXPECT_EQ([inner effectiveAppearance], light_);
  EXPECT_EQ([[window_ contentView] effectiveAppearance], dark_);
  [inner setAppearance:dark_];
  EXPECT_EQ([inner effectiveAppearance], dark_);
  EXPECT_EQ([inner appearance], dark_);
  EXPECT_EQ([outer effectiveAppearance], light_);
  for (NSView* view : {inner, outer}) [view setAppearance:nil];
  EXPECT_EQ([inner effectiveAppearance], dark_) << "the window's";
  EXPECT_EQ([inner appearance], nil);
}

TEST_F(Appearances, OfTheViewThatDrawsAreCurrent) {
  KRWitness* outer = add<KRWitness>([KRWitness class], NSMakeRect(0, 0, 100, 100));
  KRWitness* inner = [[[KRWitness alloc] initWithFrame:NSMakeRect(0, 0, 50, 50)] autorelease];
  [outer addSubview:inner];
  [inner setAppearance:dark_];
  [outer setAppearance:light_];
  show();
  EXPECT_EQ(outer->seen, light_);
  EXPECT_EQ(inner->seen, dark_);
  EXPECT_EQ([NSAppearance currentAppearance], nil);
}

TEST_F(Appearances, ThatAreSetOutsideOfDrawingStayThere) {
  KRWitness* view = add<KRWitness>([KRWitness class], NSMakeRect(0, 0, 100, 100));
  [view setAppearance:light_];
  [NSAppearance setCurrentAppearance:dark_];
  show();
  EXPECT_EQ(view->seen, light_);
  EXPECT_EQ([NSAppearance currentAppearance], dark_);
  [NSAppearance setCurrentAppearance:nil];
  EXPECT_EQ([NSAppearance currentAppearance], nil);
}

TEST_F(Appearances, ThatAViewSetsAndPutsBackLeaveItFree) {
  KRWitness* view = add<KRWitness>([KRWitness class], NSMakeRect(0, 0, 100, 100));
  view->sets = dark_;
  view->putsBack = YES;
  show();
  EXPECT_EQ(name(view->seen), "NSAppearanceNameAqua");
  EXPECT_EQ(view->after, dark_);
  desktopAppearance_.dark = true;
  view->sets = light_;
  [view display];
  EXPECT_EQ(name(view->seen), "NSAppearanceNameDarkAqua");
  EXPECT_EQ(view->after, light_);
  EXPECT_EQ([NSAppearance currentAppearance], nil);
}

TEST_F(Appearances, ThatWereSetOutsideOutliveWhatAViewSets) {
  KRWitness* view = add<KRWitness>([KRWitness class], NSMakeRect(0, 0, 100, 100));
  [view setAppearance:dark_];
  [NSAppearance setCurrentAppearance:dark_];
  for (const BOOL putsBack : {YES, NO}) {
    view->sets = light_;
    view->putsBack = putsBack;
    show();
    EXPECT_EQ(view->seen, dark_);
    EXPECT_EQ(view->after, light_);
    EXPECT_EQ([NSAppearance currentAppearance], dark_) << putsBack;
  }
}

TEST_F(Appearances, ThatAViewSetsEndWithItsDrawing) {
  KRWitness* view = add<KRWitness>([KRWitness class], NSMakeRect(0, 0, 100, 100));
  const NSUInteger count = [dark_ retainCount];
  view->sets = dark_;
  show();
  EXPECT_EQ(view->after, dark_);
  [view display];
  EXPECT_EQ(name(view->seen), "NSAppearanceNameAqua");
  EXPECT_EQ([NSAppearance currentAppearance], nil);
  EXPECT_EQ([dark_ retainCount], count);
}

TEST_F(Appearances, OfAViewAreLetGoWithIt) {
  NSAppearance* appearance = [[NSAppearance alloc] init];
  const NSUInteger count = [appearance retainCount];
  {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    NSView* view = [[NSView alloc] initWithFrame:NSZeroRect];
    EXPECT_EQ([view appearance], nil);
    [view setAppearance:appearance];
    EXPECT_EQ([view appearance], appearance);
    [view setAppearance:nil];
    EXPECT_EQ([view appearance], nil);
    [view setAppearance:appearance];
    [view release];
    [pool release];
  }
  EXPECT_EQ([appearance retainCount], count);
  [appearance release];
}

TEST_F(Appearances, OfAWindowAreLetGoWithIt) {
  const NSUInteger count = [dark_ retainCount];
  @autoreleasepool {
    NSWindow* other = [[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, 10, 10)
                                                  styleMask:NSTitledWindowMask
                                                    backing:NSBackingStoreBuffered
                                                      defer:YES];
    [other setReleasedWhenClosed:NO];
    [other setAppearance:dark_];
    EXPECT_EQ([dark_ retainCount], count + 1);
    [other close];
    [other release];
  }
  EXPECT_EQ([dark_ retainCount], count);
}

TEST_F(Appearances, ThatChangeAreDrawn) {
  KRWitness* view = add<KRWitness>([KRWitness class], NSMakeRect(0, 0, 100, 100));
  show();
  [view setAppearance:dark_];
  EXPECT_TRUE(runUntil([=] { return view->seen == dark_; }, 5));
}

}  // namespace
}  // namespace kr::testing
