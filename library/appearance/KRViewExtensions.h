// Further operations of every view. Main thread.
#pragma once

#import <AppKit/AppKit.h>

@interface NSView (KRViewExtensions)

// Puts the view above its siblings.
- (void)bringToFrontInsideSuperView;

// Scrolls the scroll view that the view is in until the rectangle, in the view's coordinates, is visible, to
// the beginning of its lines, and shows the movement. Of a rectangle that is higher than what is visible it
// shows the end with the greater y, which is the top unless the view is flipped, if `preferTop` is YES, else
// the other end. Returns NO, and moves nothing, when the rectangle is visible already or nothing scrolls.
- (BOOL)animatedVerticalScrollRectToVisible:(NSRect)rect preferTop:(BOOL)preferTop;

// Scrolls as -scrollRectToVisible: does, and at once, whatever is said of animation.
- (BOOL)scrollRectToVisible:(NSRect)rect animated:(BOOL)animated;

// Scrolls to the point, or as near to it as the document allows, and shows the movement.
- (void)scrollPointAnimated:(NSPoint)point;

// YES fixes the view to the light appearance whatever the system's mode is; NO lets it inherit again. Does
// nothing before macOS 10.14, which has one appearance only.
- (void)useLightAquaAppearance:(BOOL)light;

// Has the selector called on the view, with the notification, when the desktop changes between light and
// dark, until it is unregistered; before the view goes it must be.
- (void)registerDarkModeNotifications:(SEL)selector;
- (void)unregisterDarkModeNotifications;

// The effect view that the view lies in directly; nil without one, and before macOS 10.14.
- (NSVisualEffectView*)enclosingVisualEffectView;

// Puts the view into an effect view that takes its place in front of its siblings, unless it is in one; the
// result is that effect view. nil before macOS 10.14.
- (NSVisualEffectView*)wrapInVisualEffectView;

// How large a unit of the view is in the window. -setScale: gives both axes the same; -resetScaling is a
// scale of 1.
- (double)scale;
- (void)setScale:(double)scale;
- (void)resetScaling;

@end
