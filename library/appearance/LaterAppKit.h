// Methods that AppKit declares for systems later than the one that programs are built for, or that GNUstep's
// headers lack. Both have them at run time; on macOS only where the system is of the level that is named.
#pragma once

#import <AppKit/AppKit.h>

// Views; since 10.14 the application as well.
@protocol KRAppearanceCustomization
- (void)setAppearance:(NSAppearance*)appearance;
- (NSAppearance*)effectiveAppearance;
@end

// Views.
@protocol KRAnimatable
- (id)animator;
@end

// The class of colours, since 10.14.
@protocol KRAccentedColors
- (NSColor*)controlAccentColor;
@end
