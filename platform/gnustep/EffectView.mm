// The effect view of AppKit: GNUstep has its class, which keeps none of its settings and draws nothing. There
// is no compositor that could show what lies behind, so it is a plain background in the colour that its
// material has. Main thread.
#import "platform/gnustep/Appearance.h"
#import "platform/gnustep/ResponderValues.h"

using kr::platform::responderValue;
using kr::platform::setResponderValue;

namespace {

constexpr char kMaterial = 0;
constexpr char kBlendingMode = 0;
constexpr char kState = 0;
constexpr char kMaskImage = 0;

constexpr CGFloat kLightGrey = 0.93;
constexpr CGFloat kDarkGrey = 0.17;

NSInteger number(NSView* view, const void* key) {
  return [responderValue(view, key) integerValue];
}

void setNumber(NSView* view, const void* key, NSInteger value) {
  setResponderValue(view, key, [NSNumber numberWithInteger:value]);
  [view setNeedsDisplay:YES];
}

// Some materials are of one kind, the others follow the view's appearance.
bool isDark(NSVisualEffectView* view) {
  switch ([view material]) {
    case NSVisualEffectMaterialLight:
    case NSVisualEffectMaterialMediumLight:
      return false;
    case NSVisualEffectMaterialDark:
    case NSVisualEffectMaterialUltraDark:
      return true;
    default:
      NSString* best = [[view effectiveAppearance]
          bestMatchFromAppearancesWithNames:@[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ]];
      return [best isEqualToString:NSAppearanceNameDarkAqua];
  }
}

}  // namespace

#pragma clang diagnostic push
// Which is what is meant: on this runtime the methods of a category that is loaded later win.
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"

@implementation NSVisualEffectView (KRBackground)

- (NSVisualEffectMaterial)material {
  return number(self, &kMaterial);
}

- (void)setMaterial:(NSVisualEffectMaterial)material {
  setNumber(self, &kMaterial, material);
}

- (NSInteger)interiorBackgroundStyle {
  return isDark(self) ? NSBackgroundStyleDark : NSBackgroundStyleLight;
}

- (NSVisualEffectBlendingMode)blendingMode {
  return number(self, &kBlendingMode);
}

- (void)setBlendingMode:(NSVisualEffectBlendingMode)mode {
  setNumber(self, &kBlendingMode, mode);
}

- (NSVisualEffectState)state {
  return number(self, &kState);
}

- (void)setState:(NSVisualEffectState)state {
  setNumber(self, &kState, state);
}

- (NSImage*)maskImage {
  return responderValue(self, &kMaskImage);
}

- (void)setMaskImage:(NSImage*)image {
  setResponderValue(self, &kMaskImage, image);
  [self setNeedsDisplay:YES];
}

- (void)drawRect:(NSRect)rect {
  [[NSColor colorWithCalibratedWhite:isDark(self) ? kDarkGrey : kLightGrey alpha:1] set];
  NSRectFill(rect);
}

@end

#pragma clang diagnostic pop
