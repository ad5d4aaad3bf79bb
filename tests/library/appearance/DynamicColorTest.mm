#import "library/appearance/KRDynamicColor.h"

#import <objc/runtime.h>

#import "platform/cocoa/Bridging.h"
#import "tests/library/appearance/AppearanceFixture.h"

// Writes a text where a dynamic colour writes its colours.
@interface KRFalseColor : NSObject <NSCoding>
@end

@implementation KRFalseColor

- (void)encodeWithCoder:(NSCoder*)coder {
  [coder encodeObject:@"red" forKey:@"aquaColor"];
  [coder encodeObject:@"red" forKey:@"darkAquaColor"];
}

- (id)initWithCoder:(NSCoder*)coder {
  return [super init];
}

@end

namespace kr::testing {
namespace {

// For as long as it lives, a dynamic colour's base class answers this colour in the place of the one that is
// decoded.
class AnotherColorIsDecoded {
 public:
  explicit AnotherColorIsDecoded(NSColor* answer) {
    answer_ = answer;
    original_ = method_setImplementation(method(), reinterpret_cast<IMP>(initWithCoder));
  }
  ~AnotherColorIsDecoded() { method_setImplementation(method(), original_); }
  AnotherColorIsDecoded(const AnotherColorIsDecoded&) = delete;
  AnotherColorIsDecoded& operator=(const AnotherColorIsDecoded&) = delete;

 private:
  static Method method() { return class_getInstanceMethod([NSColor class], @selector(initWithCoder:)); }

  static id initWithCoder(id self, SEL selector, NSCoder* coder) {
    if (![self isKindOfClass:[KRDynamicColor class]]) {
      return reinterpret_cast<id (*)(id, SEL, NSCoder*)>(original_)(self, selector, coder);
    }
    [self release];
    return [answer_ retain];
  }

  static inline NSColor* answer_ = nil;
  static inline IMP original_ = nullptr;
};

class DynamicColor : public AppearanceFixture {
 protected:
  DynamicColor()
      : light_([[NSColor colorWithCalibratedRed:0.25 green:0.5 blue:0.75 alpha:1] retain]),
        dark_([[NSColor colorWithCalibratedRed:0.5 green:0.25 blue:1 alpha:0.5] retain]) {}
  ~DynamicColor() override {
    [light_ release];
    [dark_ release];
  }

  static KRDynamicColor* decoded(NSData* data) { return [NSKeyedUnarchiver unarchiveObjectWithData:data]; }
  static NSData* encoded(id object) { return [NSKeyedArchiver archivedDataWithRootObject:object]; }

  // The keys under which the archived colour has written.
  static NSArray* keys(NSData* data) {
    NSDictionary* archive = [NSPropertyListSerialization propertyListWithData:data
                                                                      options:NSPropertyListImmutable
                                                                       format:nullptr
                                                                        error:nullptr];
    for (id object in [archive objectForKey:@"$objects"]) {
      if ([object isKindOfClass:[NSDictionary class]] && [object objectForKey:@"aquaColor"] != nil) {
        return [[object allKeys] sortedArrayUsingSelector:@selector(compare:)];
      }
    }
    return nil;
  }

  NSColor* light_;
  NSColor* dark_;
};

TEST_F(DynamicColor, FollowsWhatIsDrawnIn) {
  KRDynamicColor* color = [KRDynamicColor lightColor:light_ darkColor:dark_];
  for (const bool desktopIsDark : {false, true}) {
    desktop_.dark = desktopIsDark;
    drawInLight();
    EXPECT_EQ([color effectiveColor], light_);
    drawInDark();
    EXPECT_EQ([color effectiveColor], dark_);
  }
}

TEST_F(DynamicColor, TakesTheBetterOfTheTwoForOtherAppearances) {
  KRDynamicColor* color = [KRDynamicColor lightColor:light_ darkColor:dark_];
  drawIn(NSAppearanceNameVibrantDark);
  EXPECT_EQ([color effectiveColor], dark_);
  drawIn(NSAppearanceNameVibrantLight);
  EXPECT_EQ([color effectiveColor], light_);
  drawIn(@"An appearance of somebody's own");
  EXPECT_EQ([color effectiveColor], light_);
}

TEST_F(DynamicColor, ThatIsGlobalFollowsTheDesktop) {
  KRDynamicColor* color = [KRDynamicColor lightColor:light_ darkColor:dark_ global:YES];
  for (NSString* name in @[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ]) {
    drawIn(name);
    desktop_.dark = false;
    EXPECT_EQ([color effectiveColor], light_);
    desktop_.dark = true;
    EXPECT_EQ([color effectiveColor], dark_);
  }
}

TEST_F(DynamicColor, IsToldWhatToFollow) {
  KRDynamicColor* color = [KRDynamicColor lightColor:light_ darkColor:dark_ global:NO];
  desktop_.dark = true;
  drawInLight();
  EXPECT_EQ([color useGlobalAppearance:YES], color);
  EXPECT_EQ([color effectiveColor], dark_);
  EXPECT_EQ([[color useGlobalAppearance:NO] effectiveColor], light_);
}

TEST_F(DynamicColor, WithoutADarkColorIsTheLightOne) {
  drawInDark();
  desktop_.dark = true;
  EXPECT_EQ([[KRDynamicColor lightColor:light_ darkColor:nil] effectiveColor], light_);
  EXPECT_EQ([[KRDynamicColor lightColor:light_ darkColor:nil global:YES] effectiveColor], light_);
}

TEST_F(DynamicColor, BeforeMojaveIsTheLightOne) {
  system_.appKit = kHighSierra;
  drawInDark();
  desktop_.dark = true;
  EXPECT_EQ([[KRDynamicColor lightColor:light_ darkColor:dark_] effectiveColor], light_);
  EXPECT_EQ([[KRDynamicColor lightColor:light_ darkColor:dark_ global:YES] effectiveColor], light_);
  EXPECT_EQ([[KRDynamicColor redWarningTextColor] greenComponent], 0);
  system_.appKit = 1639;
  EXPECT_EQ([[KRDynamicColor lightColor:light_ darkColor:dark_] effectiveColor], dark_);
}

TEST_F(DynamicColor, KeepsItsColorsUntilItGoes) {
  const NSUInteger light = [light_ retainCount];
  const NSUInteger dark = [dark_ retainCount];
  KRDynamicColor* color = [[KRDynamicColor alloc] initWithAquaColor:light_ darkAquaColor:dark_ global:NO];
  EXPECT_EQ([light_ retainCount], light + 1);
  EXPECT_EQ([dark_ retainCount], dark + 1);
  [color release];
  EXPECT_EQ([light_ retainCount], light);
  EXPECT_EQ([dark_ retainCount], dark);
}

TEST_F(DynamicColor, EncodesItsColors) {
  EXPECT_TRUE([KRDynamicColor supportsSecureCoding]);
  NSData* data = encoded([KRDynamicColor lightColor:light_ darkColor:dark_ global:YES]);
  EXPECT_EQ(toByteStrings(keys(data)), (Lines{"$class", "aquaColor", "darkAquaColor"}));
  KRDynamicColor* color = decoded(data);
  ASSERT_TRUE([color isMemberOfClass:[KRDynamicColor class]]);
  desktop_.dark = true;
  drawInLight();
  EXPECT_TRUE([[color effectiveColor] isEqual:light_]) << "what decides is not kept";
  drawInDark();
  EXPECT_TRUE([[color effectiveColor] isEqual:dark_]);
  desktop_.dark = false;
  EXPECT_TRUE([[color effectiveColor] isEqual:dark_]);
}

TEST_F(DynamicColor, EncodesNoDarkColorWhenItHasNone) {
  NSData* data = encoded([KRDynamicColor lightColor:light_ darkColor:nil]);
  EXPECT_EQ(toByteStrings(keys(data)), (Lines{"$class", "aquaColor"}));
  drawInDark();
  EXPECT_TRUE([[decoded(data) effectiveColor] isEqual:light_]);
}

TEST_F(DynamicColor, DecodesColorsOnly) {
  NSMutableData* data = [NSMutableData data];
  NSKeyedArchiver* archiver = [[[NSKeyedArchiver alloc] initForWritingWithMutableData:data] autorelease];
  [archiver setClassName:@"KRDynamicColor" forClass:[KRFalseColor class]];
  [archiver encodeObject:[[[KRFalseColor alloc] init] autorelease] forKey:@"root"];
  [archiver finishEncoding];
  NSKeyedUnarchiver* unarchiver = [[[NSKeyedUnarchiver alloc] initForReadingWithData:data] autorelease];
  KRDynamicColor* color = [unarchiver decodeObjectForKey:@"root"];
  ASSERT_TRUE([color isMemberOfClass:[KRDynamicColor class]]);
  EXPECT_EQ([color effectiveColor], nil);
}

TEST_F(DynamicColor, IsDecodedWhereTheBaseClassAnswersAnotherObject) {
  NSData* data = encoded([KRDynamicColor lightColor:light_ darkColor:dark_]);
  NSColor* other = [NSColor colorWithCalibratedWhite:0.5 alpha:1];
  const NSUInteger others = [other retainCount];
  KRDynamicColor* color = nil;
  {
    const AnotherColorIsDecoded whileDecoding(other);
    color = decoded(data);
  }
  ASSERT_TRUE([color isMemberOfClass:[KRDynamicColor class]]);
  EXPECT_TRUE([[color effectiveColor] isEqual:light_]);
  drawInDark();
  EXPECT_TRUE([[color effectiveColor] isEqual:dark_]);
  EXPECT_EQ([other retainCount], others);
}

TEST_F(DynamicColor, LeavesTheCodingOfPlainColorsAlone) {
  NSColor* color = [NSKeyedUnarchiver unarchiveObjectWithData:encoded(light_)];
  EXPECT_TRUE([color isEqual:light_]);
  EXPECT_FALSE([color isKindOfClass:[KRDynamicColor class]]);
}

TEST_F(DynamicColor, IsEqualToOneOfTheSameColorsThatFollowsTheSame) {
  KRDynamicColor* color = [KRDynamicColor lightColor:light_ darkColor:dark_];
  KRDynamicColor* same = [KRDynamicColor lightColor:light_ darkColor:dark_];
  EXPECT_TRUE([color isEqual:same]);
  EXPECT_EQ([color hash], [same hash]);
  EXPECT_FALSE([color isEqual:[KRDynamicColor lightColor:light_ darkColor:dark_ global:YES]]);
  EXPECT_FALSE([color isEqual:[KRDynamicColor lightColor:light_ darkColor:light_]]);
  EXPECT_FALSE([color isEqual:[KRDynamicColor lightColor:dark_ darkColor:dark_]]);
  EXPECT_FALSE([color isEqual:[KRDynamicColor lightColor:light_ darkColor:nil]]);
  EXPECT_FALSE([color isEqual:light_]);
  EXPECT_FALSE([color isEqual:@"color"]);
  EXPECT_TRUE([[[color copy] autorelease] isEqual:color]);
  EXPECT_NE(toBytes([color description]), "");
}

TEST_F(DynamicColor, ThatWarnsIsRed) {
  NSColor* red = [KRDynamicColor redWarningTextColor];
  EXPECT_EQ(red, [KRDynamicColor redWarningTextColor]);
  desktop_.dark = true;
  drawInLight();
  EXPECT_EQ(toBytes([red colorSpaceName]), toBytes(NSCalibratedRGBColorSpace));
  EXPECT_EQ([red redComponent], 0.75);
  EXPECT_EQ([red greenComponent], 0);
  EXPECT_EQ([red blueComponent], 0);
  EXPECT_EQ([red alphaComponent], 1);
  desktop_.dark = false;
  drawInDark();
  EXPECT_EQ([red redComponent], 1);
  EXPECT_NEAR([red greenComponent], 0.2, 1e-6);
  EXPECT_EQ([red blueComponent], 0);
  EXPECT_EQ([red alphaComponent], 1);
}

}  // namespace
}  // namespace kr::testing
