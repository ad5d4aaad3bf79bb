// Further operations of every view. Main thread.
#pragma once

#import <AppKit/AppKit.h>

@interface NSView (KRViewExtensions)

// YES fixes the view to the light appearance whatever the system's mode is; NO lets it inherit again. Does
// nothing before macOS 10.14, which has one appearance only.
- (void)useLightAquaAppearance:(BOOL)light;

@end
