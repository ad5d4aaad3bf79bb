#import "library/process/IdlePosting.h"

namespace {

NSString* const kTurn = @"KRIdlePostingTurn";

}  // namespace

// What a notification queue does with a second notification differs from system to system: one keeps it in
// place of the first. So the notifications wait here, and the queue only says when it is their turn.
@interface KRIdlePosting : NSObject {
  NSMutableArray* waiting;
}
- (void)post:(NSNotification*)notification;
- (void)turn:(NSNotification*)notification;
@end

@implementation KRIdlePosting

- (id)init {
  self = [super init];
  if (self != nil) {
    waiting = [[NSMutableArray alloc] init];
    [[NSNotificationCenter defaultCenter] addObserver:self selector:@selector(turn:) name:kTurn object:self];
  }
  return self;
}

- (void)dealloc {
  [[NSNotificationCenter defaultCenter] removeObserver:self];
  [waiting release];
  [super dealloc];
}

- (void)askForTurn {
  [[NSNotificationQueue defaultQueue] enqueueNotification:[NSNotification notificationWithName:kTurn
                                                                                        object:self]
                                             postingStyle:NSPostWhenIdle];
}

- (void)post:(NSNotification*)notification {
  for (NSNotification* earlier in waiting) {
    if ([earlier object] == [notification object] && [[earlier name] isEqualToString:[notification name]])
      return;
  }
  [waiting addObject:notification];
  [self askForTurn];
}

- (void)turn:(NSNotification*)notification {
  @try {
    // Not those that come in the meantime: they wait for the next time.
    for (NSUInteger left = [waiting count]; left > 0 && [waiting count] > 0; --left) {
      NSNotification* next = [[[waiting objectAtIndex:0] retain] autorelease];
      [waiting removeObjectAtIndex:0];
      [[NSNotificationCenter defaultCenter] postNotification:next];
    }
  } @finally {
    // An observer may have raised.
    if ([waiting count] > 0) [self askForTurn];
  }
}

@end

namespace kr {

void postWhenIdle(NSString* name, id object, NSDictionary* userInfo) {
  // Never released: notifications may come as long as the program runs.
  static KRIdlePosting* posting = [[KRIdlePosting alloc] init];
  [posting post:[NSNotification notificationWithName:name object:object userInfo:userInfo]];
}

}  // namespace kr
