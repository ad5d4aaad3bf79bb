// Sounds on a real sound server: what is heard of them, and on which device.
#import <AppKit/AppKit.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <functional>
#include <numbers>

#import "library/sound/SoundExtensions.h"
#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"
#include "platform/posix/Files.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/Eventually.h"
#include "tests/support/Forked.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/SoundServer.h"
#include "tests/support/WaveFile.h"

namespace kr::testing {
namespace {

constexpr double kAmplitude = 0.5;
constexpr double kLoudness = kAmplitude / std::numbers::sqrt2;  // of a sine
constexpr double kSilent = 0.001;

using Lines = std::vector<std::string>;

class Playback : public ::testing::Test {
 protected:
  // The run loop is there before any other thread is, as in an application: on GNUstep, a thread that asks
  // for something on the main thread while the first run loop is being made can stop both.
  Playback() : scope_(set()) { (void)[NSRunLoop currentRunLoop]; }
  ~Playback() override { [pool_ release]; }

  // Not owned.
  NSSound* sound(double seconds = 0.5) {
    NSString* path =
        toNSString(scratch.file("tone.wav", waveFile({.seconds = seconds, .amplitude = kAmplitude})));
    return [[[NSSound alloc] initWithContentsOfFile:path byReference:NO] autorelease];
  }

  // Runs the main run loop until the condition holds, as an application does.
  static bool runUntil(const std::function<bool()>& condition, double seconds = 10) {
    NSDate* end = [NSDate dateWithTimeIntervalSinceNow:seconds];
    while (!condition()) {
      if ([end timeIntervalSinceNow] < 0) return false;
      [[NSRunLoop currentRunLoop] runUntilDate:[NSDate dateWithTimeIntervalSinceNow:0.02]];
    }
    return true;
  }

  // The loudness of a sound that is played to its end with this volume.
  double loudnessAt(float volume) {
    const SoundServer server({.devices = {"one"}, .defaultDevice = "one"});
    const Recording one(server, "one");
    NSSound* played = sound();
    [played setVolume:volume];
    EXPECT_TRUE([played play]);
    EXPECT_TRUE(runUntil([&] { return ![played isPlaying]; }));
    return one.loudness();
  }

  template <class Code>
  static double seconds(Code code) {
    const auto start = std::chrono::steady_clock::now();
    code();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }

  ScratchFolder scratch;
  platform::testing::RecordingLog log;

 private:
  platform::Services set() {
    platform::Services services = platform::services();
    services.log = &log;
    return services;
  }

  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
  platform::ScopedServices scope_;
};

TEST_F(Playback, ASoundEffectIsHeardOnTheServersDefaultDeviceAndOnNoOther) {
  const SoundServer server({.devices = {"one", "two"}, .defaultDevice = "two"});
  const Recording one(server, "one");
  const Recording two(server, "two");
  NSSound* effect = sound(1);
  EXPECT_LT(seconds([&] { [effect playAsSoundEffect]; }), 0.5) << "it returns while the sound plays on";
  EXPECT_TRUE([effect isPlaying]);
  EXPECT_EQ(toBytes([effect playbackDeviceIdentifier]), "two");
  EXPECT_TRUE(runUntil([&] { return ![effect isPlaying]; }));
  EXPECT_NEAR(two.loudness(), kLoudness, 0.02);
  EXPECT_NEAR(two.seconds(), 1.0, 0.2);
  EXPECT_LT(one.loudness(), kSilent);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(Playback, ASoundIsHeardOnTheDeviceThatItWasGiven) {
  const SoundServer server({.devices = {"one", "two"}, .defaultDevice = "one"});
  const Recording one(server, "one");
  const Recording two(server, "two");
  NSSound* given = sound();
  [given setPlaybackDeviceIdentifier:@"two"];
  EXPECT_TRUE([given play]);
  EXPECT_TRUE(runUntil([&] { return ![given isPlaying]; }));
  EXPECT_NEAR(two.loudness(), kLoudness, 0.02);
  EXPECT_LT(one.loudness(), kSilent);
}

TEST_F(Playback, ADeviceThatIsNotThereIsRefused) {
  const SoundServer server({.devices = {"one"}, .defaultDevice = "one"});
  NSSound* given = sound();
  [given setPlaybackDeviceIdentifier:@"one"];
  NSString* raised = nil;
  @try {
    [given setPlaybackDeviceIdentifier:@"elsewhere"];
  } @catch (NSException* exception) {
    raised = [exception name];
  }
  EXPECT_TRUE([raised isEqual:NSInvalidArgumentException]);
  EXPECT_EQ(toBytes([given playbackDeviceIdentifier]), "one");
  [given setPlaybackDeviceIdentifier:nil];
  EXPECT_EQ([given playbackDeviceIdentifier], nil);
}

TEST_F(Playback, TheVolumeIsThatOfWhatIsHeard) {
  EXPECT_NEAR(loudnessAt(1.0F), kLoudness, 0.02);
}

TEST_F(Playback, AQuarterOfTheVolumeIsAQuarterAsLoud) {
  EXPECT_NEAR(loudnessAt(0.25F), kLoudness / 4, 0.01);
}

TEST_F(Playback, NoVolumeIsSilence) {
  EXPECT_LT(loudnessAt(0.0F), kSilent);
}

TEST_F(Playback, TheVolumeReadsBackWithinItsLimits) {
  NSSound* quiet = sound();
  EXPECT_EQ([quiet volume], 1.0F);
  [quiet setVolume:0.3F];
  EXPECT_FLOAT_EQ([quiet volume], 0.3F);
  [quiet setVolume:7];
  EXPECT_EQ([quiet volume], 1.0F);
  [quiet setVolume:-1];
  EXPECT_EQ([quiet volume], 0.0F);
}

TEST_F(Playback, TheVolumeCanChangeWhileItPlays) {
  const SoundServer server({.devices = {"one"}, .defaultDevice = "one"});
  const Recording one(server, "one");
  NSSound* changing = sound(4);
  EXPECT_TRUE([changing play]);
  ASSERT_TRUE(runUntil([&] { return one.loudness() > kLoudness / 2; }));
  EXPECT_LT(seconds([&] { [changing setVolume:0]; }), 0.1);
  EXPECT_TRUE(runUntil([&] { return ![changing isPlaying]; }));
  EXPECT_LT(one.seconds(), 3.6);
}

TEST_F(Playback, ASoundThatPlaysIsNotStartedAgain) {
  const SoundServer server({.devices = {"one"}, .defaultDevice = "one"});
  NSSound* playing = sound();
  EXPECT_TRUE([playing play]);
  EXPECT_FALSE([playing play]);
  EXPECT_TRUE(runUntil([&] { return ![playing isPlaying]; }));
}

TEST_F(Playback, ASoundCanBePlayedAgainAfterItsEnd) {
  const SoundServer server({.devices = {"one"}, .defaultDevice = "one"});
  const Recording one(server, "one");
  NSSound* again = sound(0.5);
  for (int count = 0; count < 2; ++count) {
    EXPECT_TRUE([again play]);
    EXPECT_TRUE(runUntil([&] { return ![again isPlaying]; }));
  }
  EXPECT_NEAR(one.seconds(), 1.0, 0.25);
}

TEST_F(Playback, AStoppedSoundIsNotHeardOut) {
  const SoundServer server({.devices = {"one"}, .defaultDevice = "one"});
  const Recording one(server, "one");
  NSSound* stopped = sound(20);
  EXPECT_TRUE([stopped play]);
  ASSERT_TRUE(runUntil([&] { return one.loudness() > kLoudness / 2; }));
  EXPECT_TRUE(runUntil([&] { return [stopped stop]; }));
  EXPECT_TRUE(runUntil([&] { return ![stopped isPlaying]; }, 5));
  EXPECT_LT(one.seconds(), 6);
}

TEST_F(Playback, ARepeatedSoundPlaysUntilItIsStopped) {
  const SoundServer server({.devices = {"one"}, .defaultDevice = "one"});
  const Recording one(server, "one");
  NSSound* repeated = sound(0.2);
  [repeated setLoops:YES];
  EXPECT_TRUE([repeated play]);
  EXPECT_TRUE(runUntil([&] { return one.seconds() > 1; }));
  EXPECT_TRUE(runUntil([&] { return [repeated stop]; }));
  EXPECT_TRUE(runUntil([&] { return ![repeated isPlaying]; }, 5));
}

TEST_F(Playback, ARepeatedSoundEndsWithItsServer) {
  SoundServer server({.devices = {"one"}, .defaultDevice = "one"});
  NSSound* repeated = sound(0.2);
  [repeated setLoops:YES];
  EXPECT_TRUE([repeated play]);
  ASSERT_TRUE(runUntil([&] { return !server.inputs().empty(); }));
  server.stop();
  EXPECT_TRUE(runUntil([&] { return ![repeated isPlaying]; }, 5));
}

TEST_F(Playback, ACopyHasVolumeAndDeviceAndADecoderOfItsOwn) {
  const SoundServer server({.devices = {"one"}, .defaultDevice = "one"});
  NSSound* copy = nil;
  @autoreleasepool {
    NSSound* original = sound(0.5);
    [original setVolume:0.3F];
    [original setPlaybackDeviceIdentifier:@"one"];
    copy = [original copy];
  }
  EXPECT_FLOAT_EQ([copy volume], 0.3F);
  EXPECT_EQ(toBytes([copy playbackDeviceIdentifier]), "one");
  EXPECT_NEAR([copy duration], 0.5, 1e-3);
  [copy release];
}

TEST_F(Playback, WhatIsNoSoundMakesNone) {
  NSString* path = toNSString(scratch.file("text.wav", "no sound"));
  EXPECT_EQ([[NSSound alloc] initWithContentsOfFile:path byReference:NO], nil);
  EXPECT_EQ([[NSSound alloc] initWithData:[NSData data]], nil);
  EXPECT_EQ([NSSound soundNamed:@"there is no such sound"], nil);
  EXPECT_EQ([NSSound soundNamed:nil], nil);
}

TEST_F(Playback, ANameBelongsToOneSound) {
  NSSound* first = sound();
  NSSound* second = sound();
  EXPECT_TRUE([first setName:@"tone"]);
  EXPECT_FALSE([second setName:@"tone"]);
  EXPECT_FALSE([second setName:nil]);
  EXPECT_EQ([NSSound soundNamed:@"tone"], first);
  EXPECT_TRUE([first setName:@"other tone"]);
  EXPECT_EQ([NSSound soundNamed:@"tone"], nil);
  EXPECT_EQ([NSSound soundNamed:@"other tone"], first);
  EXPECT_EQ(toBytes([first name]), "other tone");
}

TEST_F(Playback, WithoutAServerItOnlyLogs) {
  const NoSoundServer nobody;
  NSSound* unheard = sound();
  EXPECT_LT(seconds([&] { [unheard playAsSoundEffect]; }), 0.5);
  EXPECT_TRUE(runUntil([&] { return ![unheard isPlaying]; }, 3));
  EXPECT_EQ(log.lines(), Lines{"*** no sound: Connection refused"});
}

TEST_F(Playback, AServerThatNeverAnswersHoldsNobodyUpForLong) {
  const SilentSoundServer silent;
  NSSound* unheard = sound();
  EXPECT_LT(seconds([&] { [unheard playAsSoundEffect]; }), 1.5);
  EXPECT_LT(seconds([&] { [unheard setVolume:0.5F]; }), 0.1);
  EXPECT_LT(seconds([&] { [unheard playAsSoundEffect]; }), 0.2);
}

TEST_F(Playback, AServerThatHangsInTheMiddleHoldsNobodyUpForLong) {
  SoundServer server({.devices = {"one"}, .defaultDevice = "one"});
  NSSound* playing = sound(30);
  [playing playAsSoundEffect];
  ASSERT_TRUE(runUntil([&] { return !server.inputs().empty(); }));
  server.hang();
  NSSound* next = sound();
  EXPECT_LT(seconds([&] { [playing setVolume:0.5F]; }), 0.1);
  EXPECT_LT(seconds([&] { [next playAsSoundEffect]; }), 2.5);
  EXPECT_TRUE(runUntil([&] { return ![playing isPlaying]; }, 8));
}

TEST_F(Playback, AProgramCanEndWhileASoundPlays) {
  const SoundServer server({.devices = {"one"}, .defaultDevice = "one"});
  for (const useconds_t microseconds : {0U, 1'000U, 10'000U, 50'000U, 300'000U}) {
    const int status = inChild([&] {
      [sound(20) playAsSoundEffect];
      ::usleep(microseconds);
      std::exit(0);
      return 1;
    });
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << microseconds << ": " << status;
  }
}

TEST_F(Playback, TheToolkitsOwnSoundBundlesAreNotLoaded) {
  (void)[NSSound soundUnfilteredFileTypes];
  const std::string maps = files::contents("/proc/self/maps").value_or("");
  ASSERT_NE(maps.find("libgnustep-gui"), std::string::npos);
  EXPECT_EQ(maps.find("libao"), std::string::npos);
  EXPECT_EQ(maps.find("nssound"), std::string::npos);
}

TEST_F(Playback, TheSoundLibrariesAreLoadedForASoundOnly) {
  const auto loaded = [](const char* name) {
    return files::contents("/proc/self/maps").value_or("").find(name) != std::string::npos;
  };
  const NoSoundServer nobody;
  EXPECT_FALSE(loaded("libpulse"));
  EXPECT_FALSE(loaded("libsndfile"));
  [sound() playAsSoundEffect];
  EXPECT_TRUE(loaded("libpulse"));
  EXPECT_TRUE(loaded("libsndfile"));
}

}  // namespace
}  // namespace kr::testing
