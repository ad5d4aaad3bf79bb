// The animator of a view, which GNUstep lacks: a change of the bounds' origin that is sent to it takes its
// time, in the animation context that is current then. Whatever else is sent to it happens at once.
#import <AppKit/AppKit.h>

#import "platform/gnustep/BoundsAnimation.h"

@interface KRAnimator : NSProxy {
  NSView* view;  // owned
}
- (id)initWithView:(NSView*)view;
@end

@implementation KRAnimator

- (id)initWithView:(NSView*)theView {
  view = [theView retain];
  return self;
}

- (void)dealloc {
  [view release];
  [super dealloc];
}

- (void)setBoundsOrigin:(NSPoint)origin {
  [KRBoundsAnimation moveBoundsOriginOf:view to:origin inContext:[NSAnimationContext currentContext]];
}

- (NSMethodSignature*)methodSignatureForSelector:(SEL)selector {
  return [view methodSignatureForSelector:selector];
}

- (void)forwardInvocation:(NSInvocation*)invocation {
  [invocation invokeWithTarget:view];
}

@end

@interface NSView (KRAnimator)
- (id)animator;
@end

@implementation NSView (KRAnimator)

- (id)animator {
  return [[[KRAnimator alloc] initWithView:self] autorelease];
}

@end
