#include "library/sound/AlertVolume.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kr {
namespace {

struct Sample {
  float stored;
  double volume;
};

// Each band at its lower end, in its middle, and just above its lower end.
constexpr Sample kSamples[] = {
    {-1.0F, 0.0},  {0.0F, 0.0},        {0.2F, 0.0},    {0.35F, 0.0}, {0.36F, 0.0208333}, {0.41F, 0.125},
    {0.47F, 0.25}, {0.48F, 0.2678571}, {0.54F, 0.375}, {0.61F, 0.5}, {0.62F, 0.5147059}, {0.695F, 0.625},
    {0.78F, 0.75}, {0.79F, 0.7613636}, {0.89F, 0.875}, {1.0F, 1.0},
};

TEST(AlertVolume, RisesInFourBandsOfAQuarterEach) {
  for (const Sample& sample : kSamples) {
    EXPECT_NEAR(playbackVolume(sample.stored), sample.volume, 1e-6) << sample.stored;
  }
}

TEST(AlertVolume, IsNothingUpToTheFirstBand) {
  EXPECT_EQ(playbackVolume(0.35F), 0.0F);
  EXPECT_GT(playbackVolume(std::nextafter(0.35F, 1.0F)), 0.0F);
}

TEST(AlertVolume, IsFullAtTheEndAndNotMoreBeyond) {
  EXPECT_EQ(playbackVolume(1.0F), 1.0F);
  EXPECT_EQ(playbackVolume(1.01F), 1.0F);
  EXPECT_EQ(playbackVolume(100.0F), 1.0F);
}

TEST(AlertVolume, NeverFallsWhereTheSettingRises) {
  float last = 0;
  for (int step = 0; step <= 1000; ++step) {
    const float volume = playbackVolume(static_cast<float>(step) / 1000);
    EXPECT_GE(volume, last) << step;
    EXPECT_LT(volume - last, 0.01F) << step;
    last = volume;
  }
}

}  // namespace
}  // namespace kr
