#import "platform/gnustep/Appearance.h"
#import "tests/support/DrawnWindow.h"

namespace kr::testing {
namespace {

class EffectView : public DrawnWindow {
 protected:
  NSVisualEffectView* addEffect() {
    return add<NSVisualEffectView>([NSVisualEffectView class], NSMakeRect(0, 0, 100, 100));
  }

  static bool looksDark(NSView* view) { return (shownColor(view) & 0xFF) < 0x60; }
};

TEST_F(EffectView, KeepsItsSettings) {
  NSVisualEffectView* view = addEffect();
  EXPECT_EQ([view material], NSVisualEffectMaterialAppearanceBased);
  EXPECT_EQ([view blendingMode], NSVisualEffectBlendingModeBehindWindow);
  EXPECT_EQ([view state], NSVisualEffectStateFollowsWindowActiveState);
  EXPECT_EQ([view maskImage], nil);
  NSImage* mask = [[[NSImage alloc] initWithSize:NSMakeSize(4, 4)] autorelease];
  [view setMaterial:NSVisualEffectMaterialSidebar];
  [view setBlendingMode:NSVisualEffectBlendingModeWithinWindow];
  [view setState:NSVisualEffectStateInactive];
  [view setMaskImage:mask];
  EXPECT_EQ([view material], NSVisualEffectMaterialSidebar);
  EXPECT_EQ([view blendingMode], NSVisualEffectBlendingModeWithinWindow);
  EXPECT_EQ([view state], NSVisualEffectStateInactive);
  EXPECT_EQ([view maskImage], mask);
  EXPECT_EQ([addEffect() material], NSVisualEffectMaterialAppearanceBased) << "each its own";
}

TEST_F(EffectView, IsABackgroundInTheAppearanceOfTheView) {
  NSVisualEffectView* view = addEffect();
  [view setAppearance:[NSAppearance appearanceNamed:NSAppearanceNameAqua]];
  show();
  EXPECT_FALSE(looksDark(view));
  EXPECT_EQ([view interiorBackgroundStyle], NSBackgroundStyleLight);
  [view setAppearance:[NSAppearance appearanceNamed:NSAppearanceNameDarkAqua]];
  EXPECT_TRUE(runUntil([=] { return looksDark(view); }, 5));
  EXPECT_EQ([view interiorBackgroundStyle], NSBackgroundStyleDark);
}

TEST_F(EffectView, OfAMaterialOfItsOwnIsInThatAlways) {
  NSVisualEffectView* view = addEffect();
  [view setAppearance:[NSAppearance appearanceNamed:NSAppearanceNameAqua]];
  [view setMaterial:NSVisualEffectMaterialUltraDark];
  show();
  EXPECT_TRUE(looksDark(view));
  [view setAppearance:[NSAppearance appearanceNamed:NSAppearanceNameDarkAqua]];
  [view setMaterial:NSVisualEffectMaterialMediumLight];
  EXPECT_TRUE(runUntil([=] { return !looksDark(view); }, 5));
}

}  // namespace
}  // namespace kr::testing
