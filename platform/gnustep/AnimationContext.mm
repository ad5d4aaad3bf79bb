#import "platform/gnustep/AnimationContext.h"

#include <Block.h>

#import "platform/gnustep/BoundsAnimation.h"

namespace {

constexpr NSTimeInterval kDefaultDuration = 0.25;

// The contexts of the groups that have begun and not ended, the innermost last, below them one for animations
// outside of every group.
NSMutableArray* contexts() {
  static NSMutableArray* all = nil;
  if (all == nil) {
    NSAnimationContext* outermost = [[[NSAnimationContext alloc] init] autorelease];
    [outermost setDuration:kDefaultDuration];
    all = [[NSMutableArray alloc] initWithObjects:outermost, nil];
  }
  return all;
}

}  // namespace

#pragma clang diagnostic push
// Which is what is meant: on this runtime the methods of a category that is loaded later win.
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"

@interface NSAnimationContext (KRGroups)
- (void)complete;
@end

@implementation NSAnimationContext (KRGroups)

+ (NSAnimationContext*)currentContext {
  return [contexts() lastObject];
}

// A group has the duration of the one around it until it is given its own.
+ (void)beginGrouping {
  NSAnimationContext* context = [[[self alloc] init] autorelease];
  [context setDuration:[[self currentContext] duration]];
  [contexts() addObject:context];
}

+ (void)endGrouping {
  if ([contexts() count] < 2) return;
  NSAnimationContext* context = [[[contexts() lastObject] retain] autorelease];
  [contexts() removeLastObject];
  kr::platform::animationEnded(context);
}

+ (void)runAnimationGroup:(GSAnimationContextChanges)changes
        completionHandler:(GSAnimationContextCompletionHandler)handler {
  [self beginGrouping];
  NSAnimationContext* context = [self currentContext];
  [context setCompletionHandler:handler];
  if (changes != nil) changes(context);
  [self endGrouping];
}

- (void)setDuration:(NSTimeInterval)duration {
  _duration = duration;
}

- (NSTimeInterval)duration {
  return _duration;
}

- (void)setCompletionHandler:(GSAnimationContextCompletionHandler)handler {
  GSAnimationContextCompletionHandler previous = _completionHandler;
  _completionHandler = handler;
  if (handler != nil) _completionHandler = Block_copy(handler);
  if (previous != nil) Block_release(previous);
}

- (GSAnimationContextCompletionHandler)completionHandler {
  return _completionHandler;
}

- (void)dealloc {
  [self setCompletionHandler:nil];
  [super dealloc];
}

// The handler may set another one.
- (void)complete {
  GSAnimationContextCompletionHandler handler = _completionHandler;
  if (handler == nil) return;
  _completionHandler = nil;
  handler();
  Block_release(handler);
}

@end

#pragma clang diagnostic pop

namespace kr::platform {

void animationEnded(NSAnimationContext* context) {
  const bool isOpen = [contexts() indexOfObjectIdenticalTo:context] != NSNotFound;
  if (!isOpen && ![KRBoundsAnimation isAnyUnderWayInContext:context]) [context complete];
}

}  // namespace kr::platform
