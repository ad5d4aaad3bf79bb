// When the done sound is played, how loud and where. Nothing is heard: there is no sound server.
#import "library/sound/SoundExtensions.h"

#include <algorithm>

#import "platform/cocoa/Bridging.h"
#include "platform/testing/InMemoryAudioDevices.h"
#include "tests/support/SoundServer.h"
#import "tests/window/WindowTest.h"

namespace kr::testing {
namespace {

constexpr const char* kPlays = "+SL: play self (";

class DoneSound : public WindowTest {
 protected:
  DoneSound() : services_(set()) {
    devices_.devices = {{7, {"Phones", "Maker", "phones"}}};
    devices_.output = 7;
    setDefault(@"soundLog", [NSNumber numberWithBool:YES]);
  }

  static void setDefault(NSString* key, id value) {
    [[NSUserDefaults standardUserDefaults] registerDefaults:@{key : value}];
  }

  void loadWith(const Lines& more) {
    Lines arguments{"-sourcePath", product()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    load(arguments);
  }

  void install() {
    press(controller_->installButton);
    EXPECT_TRUE(runUntil([&] { return [controller_->installButton isEnabled]; }));
  }

  // How many sounds were played so far.
  [[nodiscard]] long played() const {
    const Lines lines = log_.lines();
    return std::count_if(lines.begin(), lines.end(),
                         [](const std::string& line) { return line.starts_with(kPlays); });
  }

 private:
  platform::Services set() {
    platform::Services services = platform::services();
    services.audioDevices = &devices_;
    return services;
  }

  platform::testing::InMemoryAudioDevices devices_;
  NoSoundServer nobody_;
  platform::ScopedServices services_;
};

TEST_F(DoneSound, IsPlayedAtTheEndOfAnInstallationThatWasToldTo) {
  loadWith({"-completionSound", "YES"});
  EXPECT_EQ(played(), 0);
  install();
  EXPECT_EQ(played(), 1);
}

TEST_F(DoneSound, IsPlayedWithTheVolumeOfAlertsWhereSoundEffectsAre) {
  [[NSUserDefaults standardUserDefaults] setVolatileDomain:@{
    @"com.apple.sound.beep.volume" : @0.47F
  }
                                                   forName:@"com.apple.systemsound"];
  loadWith({"-completionSound", "YES"});
  [controller_ playDoneSound];
  NSSound* done = [NSSound soundNamed:@"Done"];
  ASSERT_NE(done, nil);
  EXPECT_NEAR([done volume], 0.25F, 1e-6);
  EXPECT_EQ(toBytes([done playbackDeviceIdentifier]), "phones");
  EXPECT_NEAR([done duration], 1.2, 0.01);
  EXPECT_TRUE([done isPlaying]) << "it plays on";
  EXPECT_TRUE(logHas("+SL: setPlaybackDeviceIdentifier:phones"));
}

TEST_F(DoneSound, IsPlayedForNoOtherValue) {
  loadWith({"-completionSound", "NO"});
  for (NSString* value in @[ @"NO", @"yes", @"Yes", @"YES ", @" YES", @"1", @"TRUE", @"" ]) {
    [controller_->arguments setObject:value forKey:@"completionSound"];
    [controller_ playDoneSound];
    EXPECT_EQ(played(), 0) << toBytes(value);
  }
  [controller_->arguments setObject:@"YES" forKey:@"completionSound"];
  [controller_ playDoneSound];
  EXPECT_EQ(played(), 1);
}

TEST_F(DoneSound, IsNotPlayedUnlessItIsAskedFor) {
  loadWith({});
  install();
  EXPECT_EQ(text(controller_->introField), "Notes was successfully installed.");
  EXPECT_EQ(played(), 0);
}

TEST_F(DoneSound, IsNotPlayedWhereTheUserWantsNone) {
  setDefault(@"nosound", [NSNumber numberWithBool:YES]);
  loadWith({"-completionSound", "YES"});
  install();
  EXPECT_EQ(text(controller_->introField), "Notes was successfully installed.");
  EXPECT_EQ(played(), 0);
}

TEST_F(DoneSound, IsNotPlayedAfterAFailure) {
  loadWith({"-completionSound", "YES"});
  [controller_ installationFinished:@"It failed."];
  EXPECT_EQ(played(), 0);
}

TEST_F(DoneSound, IsTriedBeforeTheErrorOfAMissingSource) {
  load({"-completionSound", "YES"});
  const Lines lines = log_.lines();
  const auto plays = std::find_if(lines.begin(), lines.end(),
                                  [](const std::string& line) { return line.starts_with(kPlays); });
  const auto error = std::find(lines.begin(), lines.end(), "missing source path");
  ASSERT_NE(plays, lines.end());
  ASSERT_NE(error, lines.end());
  EXPECT_LT(plays - lines.begin(), error - lines.begin());
}

TEST_F(DoneSound, IsNotTriedBeforeThatErrorUnlessItIsAskedFor) {
  load({"-completionSound", "yes"});
  EXPECT_TRUE(logHas("missing source path"));
  EXPECT_EQ(played(), 0);
}

}  // namespace
}  // namespace kr::testing
