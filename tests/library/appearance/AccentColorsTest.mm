// The user's accent colour and the highlights in it.
#include <array>
#include <cmath>
#include <utility>

#import "library/appearance/KRDynamicColor.h"
#import "platform/cocoa/Bridging.h"
#import "tests/library/appearance/AppearanceFixture.h"

@interface NSColor (Accent)
+ (NSColor*)controlAccentColor;
@end

namespace kr::testing {
namespace {

NSString* const kAccentColor = @"AppleAccentColor";

struct Components {
  double red;
  double green;
  double blue;
};

struct Highlight {
  id number;  // as the desktop stores it; nil: not at all
  const char* name;
  Components light;
  Components dark;
};

NSString* unknownAccent(Class, SEL) {
  return @"Teal";
}

class AccentColors : public AppearanceFixture {
 protected:
  ~AccentColors() override { choose(nil); }

  // For this program alone, and not on the disk.
  static void choose(id number) {
    NSUserDefaults* defaults = [NSUserDefaults standardUserDefaults];
    [defaults removeVolatileDomainForName:NSArgumentDomain];
    if (number != nil) [defaults setVolatileDomain:@{kAccentColor : number} forName:NSArgumentDomain];
  }
  static void choose(long number) { choose([NSNumber numberWithLong:number]); }

  static std::string name() { return toBytes([KRDynamicColor accentColorName]); }

  // Both appearances of the colour that `make` gives for each accent. The components are those of `scale`.
  void expectHighlights(const std::array<Highlight, 8>& expected, double scale, NSColor* (*make)(),
                        bool global) {
    for (const Highlight& highlight : expected) {
      choose(highlight.number);
      NSColor* color = make();
      EXPECT_EQ(color, make()) << highlight.name << " is made once";
      for (const bool dark : {false, true}) {
        // The other of the two that could decide says the opposite.
        desktop_.dark = global ? dark : !dark;
        drawIn(global != dark ? NSAppearanceNameDarkAqua : NSAppearanceNameAqua);
        const Components& components = dark ? highlight.dark : highlight.light;
        EXPECT_EQ(toBytes([color colorSpaceName]), toBytes(NSCalibratedRGBColorSpace));
        EXPECT_NEAR([color redComponent], components.red / scale, 1e-6) << highlight.name << dark;
        EXPECT_NEAR([color greenComponent], components.green / scale, 1e-6) << highlight.name << dark;
        EXPECT_NEAR([color blueComponent], components.blue / scale, 1e-6) << highlight.name << dark;
        EXPECT_EQ([color alphaComponent], 1) << highlight.name;
      }
    }
  }
};

TEST_F(AccentColors, HaveNames) {
  EXPECT_EQ(toBytes(KRAccentColorNameBlue), "Blue");
  EXPECT_EQ(toBytes(KRAccentColorNamePurple), "Purple");
  EXPECT_EQ(toBytes(KRAccentColorNamePink), "Pink");
  EXPECT_EQ(toBytes(KRAccentColorNameRed), "Red");
  EXPECT_EQ(toBytes(KRAccentColorNameOrange), "Orange");
  EXPECT_EQ(toBytes(KRAccentColorNameYellow), "Yellow");
  EXPECT_EQ(toBytes(KRAccentColorNameGreen), "Green");
  EXPECT_EQ(toBytes(KRAccentColorNameGraphite), "Graphite");
}

TEST_F(AccentColors, AreStoredAsNumbers) {
  const std::pair<long, const char*> known[] = {{-1, "Graphite"}, {0, "Red"},    {1, "Orange"}, {2, "Yellow"},
                                                {3, "Green"},     {5, "Purple"}, {6, "Pink"}};
  for (const auto& [number, expected] : known) {
    choose(number);
    EXPECT_EQ(name(), expected) << number;
  }
  EXPECT_EQ(log_.lines(), Lines{});
}

TEST_F(AccentColors, AreBlueWithoutANumber) {
  EXPECT_EQ(name(), "Blue");
  for (id other in @[ @"6", @"Pink", @[], @{} ]) {
    choose(other);
    EXPECT_EQ(name(), "Blue");
  }
  EXPECT_EQ(log_.lines(), Lines{});
}

TEST_F(AccentColors, AreBlueForAnUnknownNumberWhichIsLoggedOnceInARow) {
  choose(4);
  EXPECT_EQ(name(), "Blue");
  EXPECT_EQ(log_.lines(), Lines{"*** unknown accent color index: 4"});
  EXPECT_EQ(name(), "Blue");
  EXPECT_EQ(log_.lines().size(), 1U);
  choose(9);
  EXPECT_EQ(name(), "Blue");
  EXPECT_EQ(log_.lines().back(), "*** unknown accent color index: 9");
  choose(6);
  EXPECT_EQ(name(), "Pink");
  choose(9);
  EXPECT_EQ(name(), "Blue");
  EXPECT_EQ(log_.lines().size(), 2U) << "the last unknown one";
  choose(4);
  EXPECT_EQ(name(), "Blue");
  choose(-2);
  EXPECT_EQ(name(), "Blue");
  EXPECT_EQ(log_.lines(), (Lines{"*** unknown accent color index: 4", "*** unknown accent color index: 9",
                                 "*** unknown accent color index: 4", "*** unknown accent color index: -2"}));
}

TEST_F(AccentColors, TintMenusAsTheDesktopLooks) {
  expectHighlights(
      {{{nil, "Blue", {0.16, 0.43, 0.95}, {0.04, 0.29, 0.76}},
        {@5, "Purple", {0.57, 0.26, 0.58}, {0.44, 0.18, 0.45}},
        {@6, "Pink", {0.95, 0.31, 0.61}, {0.73, 0.16, 0.43}},
        {@0, "Red", {0.85, 0.25, 0.29}, {0.76, 0.18, 0.22}},
        {@1, "Orange", {0.95, 0.51, 0.22}, {0.73, 0.34, 0.08}},
        {@2, "Yellow", {0.97, 0.71, 0.25}, {0.76, 0.53, 0.11}},
        {@3, "Green", {0.42, 0.73, 0.32}, {0.26, 0.54, 0.17}},
        {@-1, "Graphite", {0.59, 0.59, 0.59}, {0.34, 0.34, 0.34}}}},
      1, [] { return [KRDynamicColor menuHighlightColor]; }, true);
}

TEST_F(AccentColors, TintItemsOfMenusAsWhatIsDrawnInLooks) {
  expectHighlights(
      {{{nil, "Blue", {60, 139, 246}, {12, 111, 225}},
        {@5, "Purple", {169, 99, 170}, {135, 59, 135}},
        {@6, "Pink", {248, 114, 176}, {218, 74, 142}},
        {@0, "Red", {229, 95, 100}, {199, 54, 60}},
        {@1, "Orange", {248, 154, 79}, {218, 117, 31}},
        {@2, "Yellow", {252, 198, 90}, {222, 164, 42}},
        {@3, "Green", {128, 198, 107}, {90, 165, 66}},
        {@-1, "Graphite", {162, 162, 162}, {124, 128, 131}}}},
      255, [] { return [KRDynamicColor menuItemHighlightColor]; }, false);
}

TEST_F(AccentColors, TintNothingBeforeMojave) {
  system_.appKit = kHighSierra;
  choose(6);
  desktop_.dark = true;
  for (NSColor* color : {[KRDynamicColor menuHighlightColor], [KRDynamicColor menuItemHighlightColor]}) {
    EXPECT_EQ(toBytes([color colorNameComponent]), "selectedMenuItemColor");
    EXPECT_FALSE([color isKindOfClass:[KRDynamicColor class]]);
  }
}

TEST_F(AccentColors, ThatHaveNoHighlightAreTheSystemsOwnAndNotQuiteOpaque) {
  const auto accent =
      ReplacedMethod::ofClass([KRDynamicColor class], @selector(accentColorName), unknownAccent);
  NSColor* own = [[NSColor controlAccentColor] colorUsingColorSpaceName:NSCalibratedRGBColorSpace];
  ASSERT_NE(own, nil);
  for (NSColor* color : {[KRDynamicColor menuHighlightColor], [KRDynamicColor menuItemHighlightColor]}) {
    ASSERT_NE(color, nil);
    EXPECT_NEAR([color alphaComponent], 0.8, 1e-6);
    NSColor* plain = [color colorUsingColorSpaceName:NSCalibratedRGBColorSpace];
    EXPECT_NEAR([plain redComponent], [own redComponent], 1e-6);
    EXPECT_NEAR([plain greenComponent], [own greenComponent], 1e-6);
    EXPECT_NEAR([plain blueComponent], [own blueComponent], 1e-6);
  }
}

}  // namespace
}  // namespace kr::testing
