#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#import "platform/cocoa/Bridging.h"
#include "platform/gnustep/AppearanceNames.h"

namespace kr::platform {
namespace {

std::string best(NSString* name, NSArray* names) {
  @autoreleasepool {
    return toBytes([[NSAppearance appearanceNamed:name] bestMatchFromAppearancesWithNames:names]);
  }
}

TEST(AppearanceNames, LeadToThePlainLightOne) {
  EXPECT_EQ(plainerAppearance("NSAppearanceNameDarkAqua"), "NSAppearanceNameAqua");
  EXPECT_EQ(plainerAppearance("NSAppearanceNameAqua"), std::nullopt);
  EXPECT_EQ(plainerAppearance("Somebody's"), std::nullopt);
  EXPECT_EQ(plainerAppearance(""), std::nullopt);
}

TEST(AppearanceNames, MatchThemselvesFirst) {
  @autoreleasepool {
    NSArray* both = @[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ];
    EXPECT_EQ(best(NSAppearanceNameAqua, both), "NSAppearanceNameAqua");
    EXPECT_EQ(best(NSAppearanceNameDarkAqua, both), "NSAppearanceNameDarkAqua");
    EXPECT_EQ(best(@"Somebody's", @[ @"Somebody's" ]), "Somebody's");
  }
}

TEST(AppearanceNames, MatchThePlainerOnesElse) {
  @autoreleasepool {
    NSArray* both = @[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ];
    for (NSString* dark in @[
           NSAppearanceNameVibrantDark, NSAppearanceNameAccessibilityHighContrastDarkAqua,
           NSAppearanceNameAccessibilityHighContrastVibrantDark
         ]) {
      EXPECT_EQ(best(dark, both), "NSAppearanceNameDarkAqua") << toBytes(dark);
    }
    for (NSString* light in @[
           NSAppearanceNameVibrantLight, NSAppearanceNameAccessibilityHighContrastAqua,
           NSAppearanceNameAccessibilityHighContrastVibrantLight
         ]) {
      EXPECT_EQ(best(light, both), "NSAppearanceNameAqua") << toBytes(light);
    }
    EXPECT_EQ(best(NSAppearanceNameDarkAqua, @[ NSAppearanceNameAqua ]), "NSAppearanceNameAqua");
    EXPECT_EQ(best(NSAppearanceNameAqua, @[ NSAppearanceNameDarkAqua ]), "");
    EXPECT_EQ(best(@"Somebody's", both), "");
  }
}

}  // namespace
}  // namespace kr::platform
