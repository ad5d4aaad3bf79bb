#import "platform/gnustep/ThemeColors.h"

#import "platform/gnustep/Appearance.h"

namespace kr::theme {
namespace {

const Palette* gPalette = &kLight;

bool isFixedToLight(NSView* view) {
  return [[[view appearance] name] isEqualToString:NSAppearanceNameAqua];
}

// A named colour keeps what it has looked up last until it is asked in another colour space.
void forgetValue(NSColor* named) {
  (void)[named colorUsingColorSpaceName:NSCalibratedWhiteColorSpace device:nil];
}

}  // namespace

const Palette& palette() {
  return *gPalette;
}

const Palette& paletteFor(NSView* view) {
  for (NSView* around = view; around != nil; around = [around superview]) {
    if (isFixedToLight(around)) return kLight;
    if ([around isKindOfClass:[NSScrollView class]] &&
        isFixedToLight([static_cast<NSScrollView*>(around) documentView])) {
      return kLight;
    }
  }
  return palette();
}

NSColorList* systemColorList() {
  static NSColorList* list;
  if (list == nil) {
    list = [[NSColorList alloc] initWithName:@"System"];
    setPalette(palette());
  }
  return list;
}

void setPalette(const Palette& chosen) {
  gPalette = &chosen;
  for (const SystemColor& entry : kSystemColors) {
    [systemColorList() setColor:color(chosen.*entry.value) forKey:entry.name];
    forgetValue([NSColor colorWithCatalogName:@"System" colorName:entry.name]);
  }
}

}  // namespace kr::theme
