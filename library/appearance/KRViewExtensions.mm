#import "library/appearance/KRViewExtensions.h"

#include "library/utilities/SystemLevels.h"

// What AppKit declares for views since 10.14; the deployment target is older.
@protocol KRAppearanceCustomization
- (void)setAppearance:(NSAppearance*)appearance;
@end

@implementation NSView (KRViewExtensions)

- (void)useLightAquaAppearance:(BOOL)light {
  if (!kr::isOfLevel(kr::SystemLevel::mojaveOrNewer)) return;
  NSAppearance* appearance = light ? [NSAppearance appearanceNamed:NSAppearanceNameAqua] : nil;
  [static_cast<id<KRAppearanceCustomization>>(self) setAppearance:appearance];
}

@end
