#import "library/appearance/KRDynamicColor.h"

#import "library/appearance/LaterAppKit.h"
#import "library/utilities/KRUtilities.h"
#include "library/utilities/SystemLevels.h"

namespace {

NSString* const kAquaKey = @"aquaColor";
NSString* const kDarkAquaKey = @"darkAquaColor";

// Reached from 10.14 on only.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wunguarded-availability-new"
bool isDark(NSAppearance* appearance) {
  NSString* best =
      [appearance bestMatchFromAppearancesWithNames:@[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ]];
  return [best isEqualToString:NSAppearanceNameDarkAqua];
}

bool contextIsDark() {
  NSAppearance* current = [NSAppearance currentAppearance];
  return isDark(current != nil ? current
                               : [static_cast<id<KRAppearanceCustomization>>(NSApp) effectiveAppearance]);
}
#pragma clang diagnostic pop

// Not every coder looks at the class that it is told to expect. Retained.
NSColor* decodedColor(NSCoder* coder, NSString* key) {
  id color = [coder decodeObjectOfClass:[NSColor class] forKey:key];
  return [color isKindOfClass:[NSColor class]] ? [color retain] : nil;
}

}  // namespace

@implementation KRDynamicColor

+ (BOOL)supportsSecureCoding {
  return YES;
}

+ (KRDynamicColor*)lightColor:(NSColor*)light darkColor:(NSColor*)dark {
  return [self lightColor:light darkColor:dark global:NO];
}

+ (KRDynamicColor*)lightColor:(NSColor*)light darkColor:(NSColor*)dark global:(BOOL)global {
  return [[[self alloc] initWithAquaColor:light darkAquaColor:dark global:global] autorelease];
}

- (id)initWithAquaColor:(NSColor*)light darkAquaColor:(NSColor*)dark global:(BOOL)global {
  self = [super init];
  if (self != nil) {
    aquaColor = [light retain];
    darkAquaColor = [dark retain];
    useGlobalAppearance = global;
  }
  return self;
}

- (void)dealloc {
  [aquaColor release];
  [darkAquaColor release];
  [super dealloc];
}

- (id)initWithCoder:(NSCoder*)coder {
  self = [super initWithCoder:coder];
  if (self == nil) return nil;
  NSColor* light = decodedColor(coder, kAquaKey);
  NSColor* dark = decodedColor(coder, kDarkAquaKey);
  if ([self isKindOfClass:[KRDynamicColor class]]) {
    aquaColor = light;
    darkAquaColor = dark;
    return self;
  }
  // A colour class may answer an object of another class, which has no room for the two.
  [self release];
  self = [[KRDynamicColor alloc] initWithAquaColor:light darkAquaColor:dark global:NO];
  [light release];
  [dark release];
  return self;
}

- (void)encodeWithCoder:(NSCoder*)coder {
  [super encodeWithCoder:coder];
  [coder encodeObject:aquaColor forKey:kAquaKey];
  if (darkAquaColor != nil) [coder encodeObject:darkAquaColor forKey:kDarkAquaKey];
}

// Colours name their common class, by which this one would come back as a plain colour.
- (Class)classForCoder {
  return [KRDynamicColor class];
}

- (Class)classForKeyedArchiver {
  return [KRDynamicColor class];
}

- (KRDynamicColor*)useGlobalAppearance:(BOOL)global {
  useGlobalAppearance = global;
  return self;
}

- (NSColor*)effectiveColor {
  if (!kr::isOfLevel(kr::SystemLevel::mojaveOrNewer) || darkAquaColor == nil) return aquaColor;
  const bool dark = useGlobalAppearance ? [KRUtilities darkAppearance] : contextIsDark();
  return dark ? darkAquaColor : aquaColor;
}

// The colour space.

- (NSColorSpace*)colorSpace {
  return [[self effectiveColor] colorSpace];
}

- (NSColor*)colorUsingColorSpace:(NSColorSpace*)space {
  return [[self effectiveColor] colorUsingColorSpace:space];
}

- (NSString*)colorSpaceName {
  return [[self effectiveColor] colorSpaceName];
}

- (NSColor*)colorUsingColorSpaceName:(NSString*)name {
  return [[self effectiveColor] colorUsingColorSpaceName:name];
}

- (NSColor*)colorUsingColorSpaceName:(NSString*)name device:(NSDictionary*)device {
  return [[self effectiveColor] colorUsingColorSpaceName:name device:device];
}

// Components.

- (NSInteger)numberOfComponents {
  return [[self effectiveColor] numberOfComponents];
}

- (void)getComponents:(CGFloat*)components {
  [[self effectiveColor] getComponents:components];
}

- (CGFloat)redComponent {
  return [[self effectiveColor] redComponent];
}

- (CGFloat)greenComponent {
  return [[self effectiveColor] greenComponent];
}

- (CGFloat)blueComponent {
  return [[self effectiveColor] blueComponent];
}

- (void)getRed:(CGFloat*)red green:(CGFloat*)green blue:(CGFloat*)blue alpha:(CGFloat*)alpha {
  [[self effectiveColor] getRed:red green:green blue:blue alpha:alpha];
}

- (CGFloat)hueComponent {
  return [[self effectiveColor] hueComponent];
}

- (CGFloat)saturationComponent {
  return [[self effectiveColor] saturationComponent];
}

- (CGFloat)brightnessComponent {
  return [[self effectiveColor] brightnessComponent];
}

- (void)getHue:(CGFloat*)hue
    saturation:(CGFloat*)saturation
    brightness:(CGFloat*)brightness
         alpha:(CGFloat*)alpha {
  [[self effectiveColor] getHue:hue saturation:saturation brightness:brightness alpha:alpha];
}

- (CGFloat)whiteComponent {
  return [[self effectiveColor] whiteComponent];
}

- (void)getWhite:(CGFloat*)white alpha:(CGFloat*)alpha {
  [[self effectiveColor] getWhite:white alpha:alpha];
}

- (CGFloat)cyanComponent {
  return [[self effectiveColor] cyanComponent];
}

- (CGFloat)magentaComponent {
  return [[self effectiveColor] magentaComponent];
}

- (CGFloat)yellowComponent {
  return [[self effectiveColor] yellowComponent];
}

- (CGFloat)blackComponent {
  return [[self effectiveColor] blackComponent];
}

- (void)getCyan:(CGFloat*)cyan
        magenta:(CGFloat*)magenta
         yellow:(CGFloat*)yellow
          black:(CGFloat*)black
          alpha:(CGFloat*)alpha {
  [[self effectiveColor] getCyan:cyan magenta:magenta yellow:yellow black:black alpha:alpha];
}

- (CGFloat)alphaComponent {
  return [[self effectiveColor] alphaComponent];
}

- (CGColorRef)CGColor {
  return [[self effectiveColor] CGColor];
}

// Colours of lists.

- (NSString*)catalogNameComponent {
  return [[self effectiveColor] catalogNameComponent];
}

- (NSString*)colorNameComponent {
  return [[self effectiveColor] colorNameComponent];
}

- (NSString*)localizedCatalogNameComponent {
  return [[self effectiveColor] localizedCatalogNameComponent];
}

- (NSString*)localizedColorNameComponent {
  return [[self effectiveColor] localizedColorNameComponent];
}

// Drawing.

- (void)setStroke {
  [[self effectiveColor] setStroke];
}

- (void)setFill {
  [[self effectiveColor] setFill];
}

- (void)set {
  [[self effectiveColor] set];
}

// Derived colours.

- (NSColor*)highlightWithLevel:(CGFloat)level {
  return [[self effectiveColor] highlightWithLevel:level];
}

- (NSColor*)shadowWithLevel:(CGFloat)level {
  return [[self effectiveColor] shadowWithLevel:level];
}

- (NSColor*)colorWithAlphaComponent:(CGFloat)alpha {
  return [[self effectiveColor] colorWithAlphaComponent:alpha];
}

- (NSColor*)blendedColorWithFraction:(CGFloat)fraction ofColor:(NSColor*)color {
  return [[self effectiveColor] blendedColorWithFraction:fraction ofColor:color];
}

// Older systems have nobody who would call it.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wunguarded-availability-new"
- (NSColor*)colorWithSystemEffect:(NSColorSystemEffect)effect {
  return [[self effectiveColor] colorWithSystemEffect:effect];
}
#pragma clang diagnostic pop

// What every object has; a colour of this class has no components of its own to tell it by.

- (BOOL)isEqual:(id)other {
  if (other == self) return YES;
  if (![other isKindOfClass:[KRDynamicColor class]]) return NO;
  const KRDynamicColor* color = other;
  const auto same = [](NSColor* one, NSColor* another) { return one == another || [one isEqual:another]; };
  return useGlobalAppearance == color->useGlobalAppearance && same(aquaColor, color->aquaColor) &&
         same(darkAquaColor, color->darkAquaColor);
}

// Few of them are ever in one set.
- (NSUInteger)hash {
  return [[KRDynamicColor class] hash];
}

- (NSString*)description {
  return [NSString stringWithFormat:@"%@ light %@ dark %@%@", [self className], aquaColor, darkAquaColor,
                                    useGlobalAppearance ? @" global" : @""];
}

@end
