// Moves the origin of a view's bounds over a time, driven by a timer of the run loop. Main thread.
#pragma once

#import <AppKit/AppKit.h>

@interface KRBoundsAnimation : NSObject {
  NSView* view;                 // owned
  NSAnimationContext* context;  // owned
  NSTimer* timer;               // not owned
  NSPoint from;
  NSPoint to;
  NSPoint last;  // where the last step has left the view
  double start;  // seconds of a clock that is never set
  double duration;
}

// Moves the origin to `target` in the time that the context has now; at once when that is none. It takes the
// place of a movement of the view that is under way. One whose view is moved by somebody else ends there. The
// scroll view of a clip view is told of every step.
+ (void)moveBoundsOriginOf:(NSView*)view to:(NSPoint)target inContext:(NSAnimationContext*)context;

// Whether a movement that began in the context is under way.
+ (BOOL)isAnyUnderWayInContext:(NSAnimationContext*)context;

@end
