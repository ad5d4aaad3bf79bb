// What AppKit has for appearances and GNUstep lacks: the appearances of views, windows and the application,
// and which of several names fits an appearance best. The current appearance is that of the view that draws,
// until it sets another one for the rest of that drawing; outside of drawing it is what was set there, at
// first none. Main thread.
#pragma once

#import <AppKit/AppKit.h>

@interface NSResponder (KRAppearance)
// The one that a view, a window or the application was given; nil when it inherits.
- (NSAppearance*)appearance;
@end

// The effective appearance is a view's own, else that of the view it is in, of its window, of the
// application, and at last the desktop's.
@interface NSView (KRAppearance)
- (void)setAppearance:(NSAppearance*)appearance;
- (NSAppearance*)effectiveAppearance;
@end

@interface NSWindow (KRAppearance)
- (void)setAppearance:(NSAppearance*)appearance;
- (NSAppearance*)effectiveAppearance;
@end

@interface NSApplication (KRAppearance)
- (void)setAppearance:(NSAppearance*)appearance;
- (NSAppearance*)effectiveAppearance;
@end
