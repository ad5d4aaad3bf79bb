#include "platform/gnustep/Easing.h"

#include <gtest/gtest.h>

namespace kr::platform {
namespace {

TEST(Easing, GoesFromTheBeginningToTheEndAndNoFurther) {
  EXPECT_EQ(easedProgress(-1), 0);
  EXPECT_EQ(easedProgress(0), 0);
  EXPECT_EQ(easedProgress(0.5), 0.5);
  EXPECT_EQ(easedProgress(1), 1);
  EXPECT_EQ(easedProgress(7), 1);
}

TEST(Easing, IsSlowAtBothEnds) {
  double previous = 0;
  for (int step = 1; step <= 100; ++step) {
    const double progress = easedProgress(step / 100.0);
    EXPECT_GT(progress, previous) << step;
    previous = progress;
  }
  EXPECT_LT(easedProgress(0.1), 0.05);
  EXPECT_GT(easedProgress(0.9), 0.95);
  EXPECT_GT(easedProgress(0.55) - easedProgress(0.45), 0.1);
}

}  // namespace
}  // namespace kr::platform
