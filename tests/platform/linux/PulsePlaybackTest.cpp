#include "platform/linux/PulsePlayback.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <numbers>
#include <thread>
#include <vector>

#include "platform/Services.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/SoundServer.h"

namespace kr::platform {
namespace {

using kr::testing::NoSoundServer;
using kr::testing::Recording;
using kr::testing::SilentSoundServer;
using kr::testing::SoundServer;
using Lines = std::vector<std::string>;

constexpr PulseFormat kFormat{44100, 1};
constexpr double kAmplitude = 0.5;
constexpr double kLoudness = kAmplitude / std::numbers::sqrt2;  // of a sine
constexpr double kSilent = 0.001;

std::vector<float> tone(double seconds) {
  std::vector<float> samples(static_cast<std::size_t>(seconds * kFormat.framesPerSecond));
  for (std::size_t index = 0; index < samples.size(); ++index) {
    samples[index] = static_cast<float>(
        kAmplitude * std::sin(2 * std::numbers::pi * 441 * static_cast<double>(index) / 44100));
  }
  return samples;
}

class PulsePlaybackTest : public ::testing::Test {
 protected:
  PulsePlaybackTest() : scope_(set()) {}

  template <class Code>
  static double seconds(Code code) {
    const auto start = std::chrono::steady_clock::now();
    code();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }

  kr::platform::testing::RecordingLog log;

 private:
  Services set() {
    Services services = platform::services();
    services.log = &log;
    return services;
  }
  ScopedServices scope_;
};

TEST_F(PulsePlaybackTest, IsHeardOnTheDeviceAndOnNoOther) {
  const SoundServer server({.devices = {"one", "two"}, .defaultDevice = "one"});
  const Recording one(server, "one");
  const Recording two(server, "two");
  PulsePlayback playback;
  ASSERT_TRUE(playback.open(kFormat, "two"));
  ASSERT_TRUE(playback.write(tone(1)));
  playback.finish();
  EXPECT_NEAR(two.loudness(), kLoudness, 0.02);
  EXPECT_NEAR(two.seconds(), 1.0, 0.2);
  EXPECT_LT(one.loudness(), kSilent);
}

TEST_F(PulsePlaybackTest, IsHeardOnTheDefaultDeviceWhereNoneIsNamed) {
  const SoundServer server({.devices = {"one", "two"}, .defaultDevice = "two"});
  const Recording one(server, "one");
  const Recording two(server, "two");
  PulsePlayback playback;
  ASSERT_TRUE(playback.open(kFormat, std::nullopt));
  ASSERT_TRUE(playback.write(tone(0.5)));
  playback.finish();
  EXPECT_NEAR(two.loudness(), kLoudness, 0.02);
  EXPECT_LT(one.loudness(), kSilent);
}

TEST_F(PulsePlaybackTest, ASoundShorterThanTheBufferIsHeard) {
  const SoundServer server({.devices = {"one"}, .defaultDevice = "one"});
  const Recording one(server, "one");
  PulsePlayback playback;
  ASSERT_TRUE(playback.open(kFormat, std::nullopt));
  ASSERT_TRUE(playback.write(tone(0.1)));
  playback.finish();
  EXPECT_GT(one.loudness(), kSilent);
}

TEST_F(PulsePlaybackTest, ClosingDropsWhatHasNotBeenHeard) {
  const SoundServer server({.devices = {"one"}, .defaultDevice = "one"});
  const Recording one(server, "one");
  PulsePlayback playback;
  ASSERT_TRUE(playback.open(kFormat, std::nullopt));
  ASSERT_TRUE(playback.write(tone(0.2)));
  playback.close();
  EXPECT_FALSE(playback.write(tone(0.1)));
  // The device puts out what it has got within two seconds.
  std::this_thread::sleep_for(std::chrono::milliseconds(2500));
  EXPECT_LT(one.seconds(), 0.15);
}

TEST_F(PulsePlaybackTest, TheServerIsToldThatItIsNoMusic) {
  const SoundServer server({.devices = {"one"}, .defaultDevice = "one"});
  PulsePlayback playback;
  ASSERT_TRUE(playback.open(kFormat, std::nullopt));
  ASSERT_TRUE(playback.write(tone(0.5)));
  EXPECT_NE(server.inputs().find("media.role = \"event\""), std::string::npos) << server.inputs();
}

TEST_F(PulsePlaybackTest, ADeviceThatIsNotThereIsNotOpened) {
  const SoundServer server({.devices = {"one"}, .defaultDevice = "one"});
  PulsePlayback playback;
  EXPECT_FALSE(playback.open(kFormat, "elsewhere"));
  EXPECT_FALSE(playback.write(tone(0.1)));
  EXPECT_EQ(log.lines(), Lines{"*** no sound: No such entity"});
}

TEST_F(PulsePlaybackTest, WithoutAServerNothingIsOpened) {
  const NoSoundServer nobody;
  PulsePlayback playback;
  EXPECT_LT(seconds([&] { EXPECT_FALSE(playback.open(kFormat, std::nullopt)); }), 0.5);
  playback.finish();
  playback.close();
  EXPECT_EQ(log.lines(), Lines{"*** no sound: Connection refused"});
}

TEST_F(PulsePlaybackTest, AServerThatNeverAnswersIsGivenUp) {
  const SilentSoundServer silent;
  PulsePlayback playback;
  const double waited = seconds([&] { EXPECT_FALSE(playback.open(kFormat, std::nullopt)); });
  EXPECT_GT(waited, 4.5);
  EXPECT_LT(waited, 7.0);
}

TEST_F(PulsePlaybackTest, TheEndOfTheServerEndsThePlaybackAndNotTheProgram) {
  SoundServer server({.devices = {"one"}, .defaultDevice = "one"});
  PulsePlayback playback;
  ASSERT_TRUE(playback.open(kFormat, std::nullopt));
  ASSERT_TRUE(playback.write(tone(0.1)));
  server.stop();
  EXPECT_LT(seconds([&] { EXPECT_FALSE(playback.write(tone(60))); }), 3.0);
  playback.finish();
}

TEST_F(PulsePlaybackTest, AServerThatHangsEndsThePlayback) {
  SoundServer server({.devices = {"one"}, .defaultDevice = "one"});
  PulsePlayback playback;
  ASSERT_TRUE(playback.open(kFormat, std::nullopt));
  ASSERT_TRUE(playback.write(tone(0.1)));
  server.hang();
  const double waited = seconds([&] { EXPECT_FALSE(playback.write(tone(60))); });
  EXPECT_GT(waited, 1.5);
  EXPECT_LT(waited, 4.0);
  EXPECT_LT(seconds([&] { playback.close(); }), 0.5);
}

}  // namespace
}  // namespace kr::platform
