// Groups of animations and the animator of views.
#include <time.h>

#include <vector>

#import "tests/support/DrawnWindow.h"

@interface NSView (Animated)
- (id)animator;
@end

namespace kr::testing {
namespace {

double now() {
  timespec time{};
  ::clock_gettime(CLOCK_MONOTONIC, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

class Animation : public DrawnWindow {
 protected:
  Animation() : view_(add<NSView>([NSView class], NSMakeRect(0, 0, 100, 100))) {}

  [[nodiscard]] NSPoint origin() const { return [view_ bounds].origin; }
  [[nodiscard]] bool isAt(CGFloat x, CGFloat y) const { return NSEqualPoints(origin(), NSMakePoint(x, y)); }

  void move(CGFloat x, CGFloat y, double duration) {
    [NSAnimationContext beginGrouping];
    [[NSAnimationContext currentContext] setDuration:duration];
    [[view_ animator] setBoundsOrigin:NSMakePoint(x, y)];
    [NSAnimationContext endGrouping];
  }

  // Every place that the view is seen at until it is at this one.
  std::vector<NSPoint> course(CGFloat x, CGFloat y) {
    std::vector<NSPoint> seen{origin()};
    EXPECT_TRUE(runUntil([&] {
      if (!NSEqualPoints(origin(), seen.back())) seen.push_back(origin());
      return isAt(x, y);
    }));
    return seen;
  }

  NSView* view_;
};

TEST_F(Animation, PassesThroughThePlacesInBetween) {
  const double start = now();
  move(40, 200, 0.4);
  EXPECT_TRUE(isAt(0, 0)) << "nothing moves before the run loop does";
  const std::vector<NSPoint> seen = course(40, 200);
  EXPECT_GE(now() - start, 0.4);
  EXPECT_GE(seen.size(), 5U);
  for (std::size_t i = 1; i < seen.size(); ++i) {
    EXPECT_GT(seen[i].y, seen[i - 1].y);
    EXPECT_NEAR(seen[i].x * 5, seen[i].y, 1e-6) << "on a straight line";
  }
}

TEST_F(Animation, TakesAQuarterOfASecondUnlessItIsGivenAnotherTime) {
  EXPECT_EQ([[NSAnimationContext currentContext] duration], 0.25);
  const double start = now();
  [[view_ animator] setBoundsOrigin:NSMakePoint(0, 50)];
  course(0, 50);
  EXPECT_GE(now() - start, 0.25);
}

TEST_F(Animation, OfNoTimeIsDoneAtOnce) {
  move(10, 20, 0);
  EXPECT_TRUE(isAt(10, 20));
}

TEST_F(Animation, GivesWayToALaterOne) {
  move(0, 1000, 0.3);
  run(0.1);
  move(0, -100, 0.1);
  course(0, -100);
  run(0.4);
  EXPECT_TRUE(isAt(0, -100));
}

TEST_F(Animation, EndsWhereSomebodyElseMovesTheView) {
  move(0, 1000, 0.3);
  ASSERT_TRUE(runUntil([this] { return !isAt(0, 0); }));
  [view_ setBoundsOrigin:NSMakePoint(5, 5)];
  run(0.5);
  EXPECT_TRUE(isAt(5, 5));
}

TEST_F(Animation, RunsWhileAWindowIsModal) {
  move(0, 80, 0.1);
  NSDate* end = [NSDate dateWithTimeIntervalSinceNow:5];
  while (!isAt(0, 80) && [end timeIntervalSinceNow] > 0) {
    [[NSRunLoop currentRunLoop] runMode:NSModalPanelRunLoopMode
                             beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.05]];
  }
  EXPECT_TRUE(isAt(0, 80));
}

TEST_F(Animation, KeepsItsViewUntilItIsOver) {
  const NSUInteger count = [view_ retainCount];
  @autoreleasepool {
    move(0, 80, 0.1);
    EXPECT_GT([view_ retainCount], count);
    course(0, 80);
  }
  run(0.1);
  EXPECT_EQ([view_ retainCount], count);
}

TEST_F(Animation, GroupsNestAndInheritTheirDuration) {
  NSAnimationContext* outermost = [NSAnimationContext currentContext];
  [NSAnimationContext beginGrouping];
  EXPECT_EQ([[NSAnimationContext currentContext] duration], 0.25);
  [[NSAnimationContext currentContext] setDuration:2];
  [NSAnimationContext beginGrouping];
  EXPECT_EQ([[NSAnimationContext currentContext] duration], 2);
  [[NSAnimationContext currentContext] setDuration:3];
  [NSAnimationContext endGrouping];
  EXPECT_EQ([[NSAnimationContext currentContext] duration], 2);
  [NSAnimationContext endGrouping];
  EXPECT_EQ([NSAnimationContext currentContext], outermost);
  [NSAnimationContext endGrouping];
  EXPECT_EQ([NSAnimationContext currentContext], outermost) << "one end too many";
  EXPECT_EQ([outermost duration], 0.25);
}

TEST_F(Animation, SaysWhenAGroupIsOver) {
  int ends = 0;
  int* counter = &ends;
  NSView* other = add<NSView>([NSView class], NSMakeRect(0, 0, 100, 100));
  [NSAnimationContext
      runAnimationGroup:^(NSAnimationContext* context) {
        [context setDuration:0.1];
        [[view_ animator] setBoundsOrigin:NSMakePoint(0, 50)];
        [context setDuration:0.3];
        [[other animator] setBoundsOrigin:NSMakePoint(0, 50)];
      }
      completionHandler:^{
        ++*counter;
      }];
  course(0, 50);
  EXPECT_EQ(ends, 0) << "the other one is still under way";
  ASSERT_TRUE(runUntil([&] { return ends > 0; }));
  EXPECT_TRUE(NSEqualPoints([other bounds].origin, NSMakePoint(0, 50)));
  run(0.1);
  EXPECT_EQ(ends, 1);
}

TEST_F(Animation, IsNotOverWhenTheGroupMovesTheViewOnceMore) {
  int ends = 0;
  int* counter = &ends;
  [NSAnimationContext
      runAnimationGroup:^(NSAnimationContext*) {
        [[view_ animator] setBoundsOrigin:NSMakePoint(0, 50)];
        [[view_ animator] setBoundsOrigin:NSMakePoint(0, 80)];
      }
      completionHandler:^{
        ++*counter;
      }];
  EXPECT_EQ(ends, 0);
  course(0, 80);
  EXPECT_TRUE(runUntil([&] { return ends == 1; }));
}

TEST_F(Animation, SaysSoOfAGroupWithoutAnimationsAtItsEnd) {
  int ends = 0;
  int* counter = &ends;
  [NSAnimationContext runAnimationGroup:nil
                      completionHandler:^{
                        ++*counter;
                      }];
  EXPECT_EQ(ends, 1);
}

TEST_F(Animation, HandsOverWhateverElseTheAnimatorIsTold) {
  [[view_ animator] setFrameOrigin:NSMakePoint(7, 8)];
  EXPECT_TRUE(NSEqualPoints([view_ frame].origin, NSMakePoint(7, 8)));
  EXPECT_EQ([[view_ animator] superview], [view_ superview]);
}

}  // namespace
}  // namespace kr::testing
