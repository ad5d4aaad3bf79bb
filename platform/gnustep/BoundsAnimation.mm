#import "platform/gnustep/BoundsAnimation.h"

#include "platform/Clock.h"
#include "platform/SystemServices.h"
#import "platform/gnustep/AnimationContext.h"
#include "platform/gnustep/Easing.h"

namespace {

constexpr NSTimeInterval kStep = 1.0 / 60;

// Those under way; they are kept here.
NSMutableArray* running() {
  static NSMutableArray* animations = [[NSMutableArray alloc] init];
  return animations;
}

// Of the system's clock, whatever clock the services have: what moves is to be seen.
double now() {
  return kr::platform::systemClock().monotonicSeconds();
}

void setBoundsOrigin(NSView* view, NSPoint origin) {
  [view setBoundsOrigin:origin];
  [view setNeedsDisplay:YES];
  NSView* outer = [view superview];
  if ([outer isKindOfClass:[NSScrollView class]] && [view isKindOfClass:[NSClipView class]]) {
    [static_cast<NSScrollView*>(outer) reflectScrolledClipView:static_cast<NSClipView*>(view)];
  }
}

}  // namespace

@implementation KRBoundsAnimation

+ (void)moveBoundsOriginOf:(NSView*)view to:(NSPoint)target inContext:(NSAnimationContext*)context {
  for (KRBoundsAnimation* other in [NSArray arrayWithArray:running()]) {
    if (other->view == view) [other end];
  }
  if ([context duration] > 0) {
    KRBoundsAnimation* animation = [[[self alloc] initWithView:view target:target
                                                       context:context] autorelease];
    [running() addObject:animation];
    [animation begin];
  } else {
    setBoundsOrigin(view, target);
  }
}

+ (BOOL)isAnyUnderWayInContext:(NSAnimationContext*)context {
  for (KRBoundsAnimation* animation in running()) {
    if (animation->context == context) return YES;
  }
  return NO;
}

- (id)initWithView:(NSView*)theView target:(NSPoint)target context:(NSAnimationContext*)theContext {
  self = [super init];
  if (self != nil) {
    view = [theView retain];
    context = [theContext retain];
    from = [view bounds].origin;
    to = target;
    last = from;
    duration = [context duration];
  }
  return self;
}

- (void)dealloc {
  [view release];
  [context release];
  [super dealloc];
}

- (void)begin {
  start = now();
  timer = [NSTimer timerWithTimeInterval:kStep
                                  target:self
                                selector:@selector(step:)
                                userInfo:nil
                                 repeats:YES];
  for (NSString* mode in @[ NSDefaultRunLoopMode, NSModalPanelRunLoopMode, NSEventTrackingRunLoopMode ]) {
    [[NSRunLoop currentRunLoop] addTimer:timer forMode:mode];
  }
}

- (void)step:(NSTimer*)sender {
  if (!NSEqualPoints([view bounds].origin, last)) {
    [self end];
    return;
  }
  const double part = (now() - start) / duration;
  const double way = kr::platform::easedProgress(part);
  setBoundsOrigin(
      view, part < 1 ? NSMakePoint(from.x + way * (to.x - from.x), from.y + way * (to.y - from.y)) : to);
  last = [view bounds].origin;
  if (part >= 1) [self end];
}

- (void)end {
  [[self retain] autorelease];
  [timer invalidate];
  timer = nil;
  [running() removeObjectIdenticalTo:self];
  kr::platform::animationEnded(context);
}

@end
