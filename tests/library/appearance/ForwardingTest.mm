// Whatever a dynamic colour can be asked is answered by the colour in force.
#include <functional>
#include <string>

#import "library/appearance/KRDynamicColor.h"
#include "platform/Format.h"
#import "platform/cocoa/Bridging.h"
#import "tests/library/appearance/AppearanceFixture.h"

namespace kr::testing {
namespace {

using Operation = std::function<std::string(NSColor*)>;

std::string text(double number) {
  return formatted("%.6f", number);
}

std::string text(NSColor* color) {
  return color == nil ? "nil" : toBytes([color description]);
}

CGColorRef ownAddress(NSColor* color, SEL) {
  return reinterpret_cast<CGColorRef>(color);
}

class Forwarding : public AppearanceFixture {
 protected:
  // The dynamic colour answers as the one in force, and the two answer differently.
  static void expect(NSColor* light, NSColor* dark, const Operation& operation) {
    KRDynamicColor* color = [KRDynamicColor lightColor:light darkColor:dark];
    EXPECT_NE(operation(light), operation(dark)) << "the two cannot be told apart";
    drawInLight();
    EXPECT_EQ(operation(color), operation(light));
    drawInDark();
    EXPECT_EQ(operation(color), operation(dark));
  }

  static void expectRGB(const Operation& operation) {
    expect([NSColor colorWithCalibratedRed:0.1 green:0.2 blue:0.3 alpha:0.4],
           [NSColor colorWithCalibratedRed:0.9 green:0.7 blue:0.6 alpha:0.5], operation);
  }
  static void expectGrey(const Operation& operation) {
    expect([NSColor colorWithCalibratedWhite:0.25 alpha:0.5], [NSColor colorWithCalibratedWhite:0.75 alpha:1],
           operation);
  }
  static void expectInk(const Operation& operation) {
    expect([NSColor colorWithDeviceCyan:0.1 magenta:0.2 yellow:0.3 black:0.4 alpha:0.5],
           [NSColor colorWithDeviceCyan:0.6 magenta:0.7 yellow:0.8 black:0.9 alpha:1], operation);
  }
  static void expectNamed(const Operation& operation) {
    expect([NSColor textColor], [NSColor controlColor], operation);
  }
};

TEST_F(Forwarding, OfTheColorSpace) {
  NSColor* grey = [NSColor colorWithCalibratedWhite:0.5 alpha:1];
  NSColor* ink = [NSColor colorWithDeviceCyan:0.1 magenta:0.2 yellow:0.3 black:0.4 alpha:1];
  expect(grey, ink, [](NSColor* color) { return toBytes([color colorSpaceName]); });
  expect(grey, ink, [](NSColor* color) {
    return formatted("%d", static_cast<int>([[color colorSpace] colorSpaceModel]));
  });
  expectRGB(
      [](NSColor* color) { return text([color colorUsingColorSpace:[NSColorSpace deviceRGBColorSpace]]); });
  expectRGB([](NSColor* color) { return text([color colorUsingColorSpaceName:NSDeviceRGBColorSpace]); });
  expectRGB([](NSColor* color) {
    return text([color colorUsingColorSpaceName:NSDeviceCMYKColorSpace device:nil]);
  });
}

TEST_F(Forwarding, OfTheComponents) {
  expect([NSColor colorWithCalibratedWhite:0.5 alpha:1],
         [NSColor colorWithDeviceCyan:0.1 magenta:0.2 yellow:0.3 black:0.4 alpha:1],
         [](NSColor* color) { return formatted("%d", [color numberOfComponents]); });
  expectRGB([](NSColor* color) {
    CGFloat components[4] = {};
    [color getComponents:components];
    return formatted("%f %f %f %f", components[0], components[1], components[2], components[3]);
  });
}

TEST_F(Forwarding, OfRedGreenAndBlue) {
  expectRGB([](NSColor* color) { return text([color redComponent]); });
  expectRGB([](NSColor* color) { return text([color greenComponent]); });
  expectRGB([](NSColor* color) { return text([color blueComponent]); });
  expectRGB([](NSColor* color) {
    CGFloat red = 0;
    CGFloat green = 0;
    CGFloat blue = 0;
    CGFloat alpha = 0;
    [color getRed:&red green:&green blue:&blue alpha:&alpha];
    return formatted("%f %f %f %f", red, green, blue, alpha);
  });
}

TEST_F(Forwarding, OfHueSaturationAndBrightness) {
  expectRGB([](NSColor* color) { return text([color hueComponent]); });
  expectRGB([](NSColor* color) { return text([color saturationComponent]); });
  expectRGB([](NSColor* color) { return text([color brightnessComponent]); });
  expectRGB([](NSColor* color) {
    CGFloat hue = 0;
    CGFloat saturation = 0;
    CGFloat brightness = 0;
    CGFloat alpha = 0;
    [color getHue:&hue saturation:&saturation brightness:&brightness alpha:&alpha];
    return formatted("%f %f %f %f", hue, saturation, brightness, alpha);
  });
}

TEST_F(Forwarding, OfGrey) {
  expectGrey([](NSColor* color) { return text([color whiteComponent]); });
  expectGrey([](NSColor* color) {
    CGFloat white = 0;
    CGFloat alpha = 0;
    [color getWhite:&white alpha:&alpha];
    return formatted("%f %f", white, alpha);
  });
}

TEST_F(Forwarding, OfInks) {
  expectInk([](NSColor* color) { return text([color cyanComponent]); });
  expectInk([](NSColor* color) { return text([color magentaComponent]); });
  expectInk([](NSColor* color) { return text([color yellowComponent]); });
  expectInk([](NSColor* color) { return text([color blackComponent]); });
  expectInk([](NSColor* color) {
    CGFloat cyan = 0;
    CGFloat magenta = 0;
    CGFloat yellow = 0;
    CGFloat black = 0;
    CGFloat alpha = 0;
    [color getCyan:&cyan magenta:&magenta yellow:&yellow black:&black alpha:&alpha];
    return formatted("%f %f %f %f %f", cyan, magenta, yellow, black, alpha);
  });
}

TEST_F(Forwarding, OfAlphaAndThePlatformsColor) {
  expectRGB([](NSColor* color) { return text([color alphaComponent]); });
  const auto address = ReplacedMethod::ofInstances([NSColor class], @selector(CGColor), ownAddress);
  expectRGB(
      [](NSColor* color) { return formatted("%X", reinterpret_cast<std::uintptr_t>([color CGColor])); });
}

TEST_F(Forwarding, OfNamesInColorLists) {
  expectNamed([](NSColor* color) { return toBytes([color colorNameComponent]); });
  expectNamed([](NSColor* color) { return toBytes([color localizedColorNameComponent]); });
  NSColor* system = [NSColor textColor];
  NSColor* other = [NSColor colorWithCatalogName:@"Other" colorName:@"textColor"];
  expect(system, other, [](NSColor* color) { return toBytes([color catalogNameComponent]); });
  expect(system, other, [](NSColor* color) { return toBytes([color localizedCatalogNameComponent]); });
}

TEST_F(Forwarding, OfDerivedColors) {
  expectRGB([](NSColor* color) { return text([color highlightWithLevel:0.3]); });
  expectRGB([](NSColor* color) { return text([color shadowWithLevel:0.3]); });
  expectRGB([](NSColor* color) { return text([color colorWithAlphaComponent:0.3]); });
  expectRGB([](NSColor* color) {
    NSColor* blue = [NSColor colorWithCalibratedRed:0 green:0 blue:1 alpha:1];
    return text([color blendedColorWithFraction:0.3 ofColor:blue]);
  });
  for (const NSColorSystemEffect effect :
       {NSColorSystemEffectNone, NSColorSystemEffectPressed, NSColorSystemEffectDeepPressed,
        NSColorSystemEffectDisabled, NSColorSystemEffectRollover}) {
    expectRGB([effect](NSColor* color) { return text([color colorWithSystemEffect:effect]); });
  }
}

TEST_F(Forwarding, GivesPlainColorsThatStayWhenTheAppearanceChanges) {
  KRDynamicColor* color = [KRDynamicColor lightColor:[NSColor colorWithCalibratedRed:1 green:0 blue:0 alpha:1]
                                           darkColor:[NSColor colorWithCalibratedRed:0
                                                                               green:1
                                                                                blue:0
                                                                               alpha:1]];
  drawInDark();
  NSColor* derived = [color colorWithAlphaComponent:0.25];
  drawInLight();
  EXPECT_FALSE([derived isKindOfClass:[KRDynamicColor class]]);
  EXPECT_EQ([derived greenComponent], 1);
  EXPECT_EQ([derived redComponent], 0);
  EXPECT_EQ([derived alphaComponent], 0.25);
}

}  // namespace
}  // namespace kr::testing
