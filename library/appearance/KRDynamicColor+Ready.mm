// The colours that come ready made, each made once and kept.
#include "library/appearance/AccentColors.h"
#import "library/appearance/KRDynamicColor.h"
#import "library/appearance/LaterAppKit.h"
#include "library/utilities/SystemLevels.h"
#import "platform/cocoa/Bridging.h"

NSString* const KRAccentColorNameBlue = @"Blue";
NSString* const KRAccentColorNamePurple = @"Purple";
NSString* const KRAccentColorNamePink = @"Pink";
NSString* const KRAccentColorNameRed = @"Red";
NSString* const KRAccentColorNameOrange = @"Orange";
NSString* const KRAccentColorNameYellow = @"Yellow";
NSString* const KRAccentColorNameGreen = @"Green";
NSString* const KRAccentColorNameGraphite = @"Graphite";

namespace {

NSString* const kAccentColorDefault = @"AppleAccentColor";
constexpr CGFloat kUnknownAccentAlpha = 0.8;
constexpr kr::LightAndDark kRedWarning{{0.75, 0.0, 0.0}, {1.0, 0.2, 0.0}};

NSColor* color(const kr::RGB& rgb) {
  return [NSColor colorWithCalibratedRed:rgb.red green:rgb.green blue:rgb.blue alpha:1.0];
}

KRDynamicColor* dynamicColor(const kr::LightAndDark& colors, bool global) {
  return [KRDynamicColor lightColor:color(colors.light) darkColor:color(colors.dark) global:global];
}

// By the names of the accent colours. Owned by the caller.
NSDictionary* highlightColors(kr::LightAndDark kr::AccentColor::*kind, bool global) {
  NSMutableDictionary* colors = [[NSMutableDictionary alloc] init];
  for (const kr::AccentColor& accent : kr::accentColors()) {
    [colors setObject:dynamicColor(accent.*kind, global) forKey:kr::toNSString(accent.name)];
  }
  return colors;
}

NSColor* highlightColor(NSDictionary* (*table)()) {
  if (!kr::isOfLevel(kr::SystemLevel::mojaveOrNewer)) {
    // Systems older than that have nothing in its place.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"
    return [NSColor selectedMenuItemColor];
#pragma clang diagnostic pop
  }
  NSColor* highlight = [table() objectForKey:[KRDynamicColor accentColorName]];
  if (highlight != nil) return highlight;
  return [[static_cast<id<KRAccentedColors>>([NSColor class]) controlAccentColor]
      colorWithAlphaComponent:kUnknownAccentAlpha];
}

NSDictionary* menuColors() {
  static NSDictionary* colors = highlightColors(&kr::AccentColor::menu, true);
  return colors;
}

NSDictionary* menuItemColors() {
  static NSDictionary* colors = highlightColors(&kr::AccentColor::menuItem, false);
  return colors;
}

}  // namespace

@implementation KRDynamicColor (Ready)

+ (NSColor*)redWarningTextColor {
  static KRDynamicColor* red = [dynamicColor(kRedWarning, false) retain];
  return red;
}

+ (NSString*)accentColorName {
  id number = [[NSUserDefaults standardUserDefaults] objectForKey:kAccentColorDefault];
  const bool isNumber = [number isKindOfClass:[NSNumber class]];
  return kr::toNSString(
      kr::accentColorName(isNumber ? std::optional<long>([number integerValue]) : std::nullopt));
}

+ (NSColor*)menuHighlightColor {
  return highlightColor(menuColors);
}

+ (NSColor*)menuItemHighlightColor {
  return highlightColor(menuItemColors);
}

@end
