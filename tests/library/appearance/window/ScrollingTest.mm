// Scrolling to what is to be seen, with documents of both directions.
#include <cmath>
#include <vector>

#import "library/appearance/KRViewExtensions.h"
#import "tests/support/DrawnWindow.h"

@interface KRFlippedView : NSView
@end

@implementation KRFlippedView

- (BOOL)isFlipped {
  return YES;
}

@end

namespace kr::testing {
namespace {

constexpr CGFloat kWidth = 200;
constexpr CGFloat kHeight = 100;
constexpr CGFloat kDocumentWidth = 500;
constexpr CGFloat kDocumentHeight = 1000;

// A scroll view without scrollers, whose document is seen through a window of 200 by 100.
class Scrolling : public DrawnWindow {
 protected:
  void scrollOver(Class documentClass) {
    scrollView_ = add<NSScrollView>([NSScrollView class], NSMakeRect(0, 0, kWidth, kHeight));
    [scrollView_ setBorderType:NSNoBorder];
    document_ =
        [[[documentClass alloc] initWithFrame:NSMakeRect(0, 0, kDocumentWidth, kDocumentHeight)] autorelease];
    [scrollView_ setDocumentView:document_];
    scrollTo(0, 0);
    ASSERT_TRUE(NSEqualSizes([document_ visibleRect].size, NSMakeSize(kWidth, kHeight)));
  }

  void scrollTo(CGFloat x, CGFloat y) {
    [[scrollView_ contentView] setBoundsOrigin:NSMakePoint(x, y)];
    ASSERT_TRUE(isAt(x, y));
  }

  [[nodiscard]] NSPoint origin() const { return [[scrollView_ contentView] bounds].origin; }
  [[nodiscard]] bool isAt(CGFloat x, CGFloat y) const { return NSEqualPoints(origin(), NSMakePoint(x, y)); }

  // Whether the document comes to rest there.
  bool comesTo(CGFloat x, CGFloat y) {
    runUntil([&] { return isAt(x, y); }, 2);
    run(0.1);
    return isAt(x, y);
  }

  // From the place (20, 400).
  bool scroll(CGFloat y, CGFloat height, BOOL preferTop = NO) {
    scrollTo(20, 400);
    return [document_ animatedVerticalScrollRectToVisible:NSMakeRect(0, y, 10, height) preferTop:preferTop];
  }

  NSScrollView* scrollView_ = nil;
  NSView* document_ = nil;
};

class ScrollingBothWays : public Scrolling, public ::testing::WithParamInterface<bool> {
 protected:
  ScrollingBothWays() { scrollOver(GetParam() ? [KRFlippedView class] : [NSView class]); }
};

INSTANTIATE_TEST_SUITE_P(OfAFlippedView, ScrollingBothWays, ::testing::Values(true));
INSTANTIATE_TEST_SUITE_P(OfAnUnflippedView, ScrollingBothWays, ::testing::Values(false));

TEST_P(ScrollingBothWays, LeavesWhatIsVisibleWhereItIs) {
  EXPECT_FALSE(scroll(400, 99));
  EXPECT_TRUE(comesTo(20, 400)) << "sideways as well";
}

TEST_P(ScrollingBothWays, GoesBackAndToTheBeginningOfTheLines) {
  EXPECT_TRUE(scroll(350, 20));
  EXPECT_TRUE(comesTo(0, 350));
}

TEST_P(ScrollingBothWays, GoesOnAndToTheBeginningOfTheLines) {
  EXPECT_TRUE(scroll(600, 20));
  EXPECT_TRUE(comesTo(0, 520));
}

TEST_P(ScrollingBothWays, GoesToTheBeginningOfTheLinesForAnEndOnTheEdge) {
  EXPECT_TRUE(scroll(450, 50));
  EXPECT_TRUE(comesTo(0, 400));
}

TEST_P(ScrollingBothWays, ShowsTheBeginningOfWhatIsTooHigh) {
  EXPECT_TRUE(scroll(600, 300));
  EXPECT_TRUE(comesTo(0, 600));
  EXPECT_TRUE(scroll(100, 800));
  EXPECT_TRUE(comesTo(0, 100));
}

TEST_P(ScrollingBothWays, ShowsTheEndOfWhatIsTooHighWhenThatIsPreferred) {
  EXPECT_TRUE(scroll(600, 300, YES));
  EXPECT_TRUE(comesTo(0, 800));
  EXPECT_TRUE(scroll(0, 300, YES));
  EXPECT_TRUE(comesTo(0, 200));
}

TEST_P(ScrollingBothWays, OfAPartOfAnInnerViewCountsFromWhatIsVisibleOfThat) {
  NSView* inner = [[[[document_ class] alloc] initWithFrame:NSMakeRect(0, 450, 100, 400)] autorelease];
  [document_ addSubview:inner];
  scrollTo(20, 400);
  ASSERT_TRUE(NSEqualRects([inner visibleRect], NSMakeRect(20, 0, 80, 50)));
  EXPECT_TRUE([inner animatedVerticalScrollRectToVisible:NSMakeRect(0, 100, 10, 10) preferTop:NO]);
  EXPECT_TRUE(comesTo(0, 460));
}

TEST_P(ScrollingBothWays, ShowsTheMovement) {
  ASSERT_TRUE(scroll(800, 100));
  std::vector<CGFloat> seen{origin().y};
  ASSERT_TRUE(runUntil([&] {
    if (origin().y != seen.back()) seen.push_back(origin().y);
    return isAt(0, 800);
  }));
  EXPECT_GE(seen.size(), 4U);
  EXPECT_EQ(seen.front(), 400) << "it has not jumped";
  for (std::size_t i = 1; i < seen.size(); ++i) EXPECT_GT(seen[i], seen[i - 1]);
}

TEST_P(ScrollingBothWays, TakesTheScrollersAlong) {
  [scrollView_ setHasVerticalScroller:YES];
  [scrollView_ tile];
  scrollTo(0, 400);
  const float before = [[scrollView_ verticalScroller] floatValue];
  ASSERT_TRUE([document_ animatedVerticalScrollRectToVisible:NSMakeRect(0, 700, 10, 100) preferTop:NO]);
  ASSERT_TRUE(comesTo(0, 700));
  const float after = [[scrollView_ verticalScroller] floatValue];
  EXPECT_NEAR(std::abs(after - before), 300 / (kDocumentHeight - kHeight), 0.01);
}

TEST_P(ScrollingBothWays, ToAPointStopsAtTheEndsOfTheDocument) {
  scrollTo(20, 400);
  [document_ scrollPointAnimated:NSMakePoint(60, 500)];
  EXPECT_TRUE(isAt(20, 400)) << "it moves from there";
  EXPECT_TRUE(comesTo(60, 500));
  [document_ scrollPointAnimated:NSMakePoint(5000, 5000)];
  EXPECT_TRUE(comesTo(kDocumentWidth - kWidth, kDocumentHeight - kHeight));
  [document_ scrollPointAnimated:NSMakePoint(-10, -10)];
  EXPECT_TRUE(comesTo(0, 0));
}

TEST_P(ScrollingBothWays, ToAPointShowsTheMovement) {
  int places = 0;
  CGFloat last = origin().y;
  [document_ scrollPointAnimated:NSMakePoint(0, 900)];
  ASSERT_TRUE(runUntil([&] {
    if (origin().y != last) ++places;
    last = origin().y;
    return isAt(0, 900);
  }));
  EXPECT_GE(places, 4);
}

TEST_P(ScrollingBothWays, AsThePlatformDoesIsDoneAtOnce) {
  for (const BOOL animated : {NO, YES}) {
    scrollTo(0, 400);
    EXPECT_TRUE([document_ scrollRectToVisible:NSMakeRect(0, 600, 10, 20) animated:animated]);
    EXPECT_TRUE(isAt(0, 520));
    EXPECT_FALSE([document_ scrollRectToVisible:NSMakeRect(0, 600, 10, 20) animated:animated]);
    EXPECT_TRUE(isAt(0, 520));
  }
}

TEST_F(Scrolling, OfAViewThatNothingScrollsDoesNothing) {
  NSView* view = add<NSView>([NSView class], NSMakeRect(0, 0, 10, 10));
  EXPECT_FALSE([view animatedVerticalScrollRectToVisible:NSMakeRect(0, 90, 10, 10) preferTop:NO]);
  [view scrollPointAnimated:NSMakePoint(5, 5)];
  run(0.1);
  EXPECT_TRUE(NSEqualRects([view bounds], NSMakeRect(0, 0, 10, 10)));
}

}  // namespace
}  // namespace kr::testing
