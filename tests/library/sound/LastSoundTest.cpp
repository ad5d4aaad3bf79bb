#include "library/sound/LastSound.h"

#include <gtest/gtest.h>

namespace kr {
namespace {

TEST(LastSound, IsNoneBeforeTheFirst) {
  EXPECT_EQ(lastSoundTime(), std::nullopt);
  setLastSoundTime(1000);
  EXPECT_EQ(lastSoundTime(), 1000.0);
}

TEST(LastSound, WithoutOneTheHardwareIsAsleep) {
  EXPECT_TRUE(needsWaking(std::nullopt, 1000));
}

TEST(LastSound, TheHardwareStaysAwakeForTwentyFiveSeconds) {
  EXPECT_FALSE(needsWaking(1000, 1000));
  EXPECT_FALSE(needsWaking(1000, 1010));
  EXPECT_FALSE(needsWaking(1000, 1025));
  EXPECT_TRUE(needsWaking(1000, 1025.001));
}

TEST(LastSound, AClockThatWasSetBackWakesNothing) {
  EXPECT_FALSE(needsWaking(1000, 500));
}

}  // namespace
}  // namespace kr
