// Playing as a sound effect: which device is set, in which order, and what is logged.
#import "tests/library/sound/RecordingSound.h"
#import "tests/library/sound/SoundFixture.h"

#include "library/sound/LastSound.h"

namespace kr {
namespace {

using testing::Lines;
using testing::SoundFixture;

class PlayingAsSoundEffect : public SoundFixture {
 protected:
  PlayingAsSoundEffect() : sound([[RecordingSound alloc] init]) {
    devices.devices = {{3, {"Speakers", "Maker", "speakers"}}, {7, {"Phones", "Maker", "phones"}}};
    devices.output = 7;
  }
  ~PlayingAsSoundEffect() override { [sound release]; }

  RecordingSound* sound;
};

TEST_F(PlayingAsSoundEffect, PlaysOnTheDeviceForSoundEffects) {
  [sound playAsSoundEffect];
  EXPECT_EQ(sound->calls, (Lines{"device phones", "duration", "play"}));
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(PlayingAsSoundEffect, PlaysWithoutChoosingADeviceWhereThereIsNone) {
  devices.output.reset();
  [sound playAsSoundEffect];
  EXPECT_EQ(sound->calls, (Lines{"duration", "play"}));
}

TEST_F(PlayingAsSoundEffect, PlaysOnTheDefaultDeviceWhereTheOneIsRefused) {
  sound->refusesDevices = YES;
  [sound playAsSoundEffect];
  EXPECT_EQ(sound->calls, (Lines{"device phones", "device (nil)", "duration", "play"}));
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(PlayingAsSoundEffect, TheSoundLogHasEveryStep) {
  setDefault(@"soundLog", [NSNumber numberWithBool:YES]);
  [sound playAsSoundEffect];
  EXPECT_EQ(log.lines(), (Lines{"playAsSoundEffect: <sound>", "   device Speakers by Maker id speakers",
                                "   device Phones by Maker id phones", "+SL: soundEffectID=phones",
                                "+SL: setPlaybackDeviceIdentifier:phones", "+SL: play self (<sound>)"}));
}

TEST_F(PlayingAsSoundEffect, TheSoundLogSaysThatThereIsNoDevice) {
  setDefault(@"soundLog", [NSNumber numberWithBool:YES]);
  devices.devices.clear();
  devices.output.reset();
  [sound playAsSoundEffect];
  EXPECT_EQ(log.lines(),
            (Lines{"playAsSoundEffect: <sound>", "+SL: soundEffectID=(null)", "+SL: play self (<sound>)"}));
}

TEST_F(PlayingAsSoundEffect, TheSoundLogHasTheException) {
  setDefault(@"soundLog", [NSNumber numberWithBool:YES]);
  devices.devices.erase(3);
  sound->refusesDevices = YES;
  [sound playAsSoundEffect];
  const Lines lines = log.lines();
  ASSERT_EQ(lines.size(), 6U);
  EXPECT_EQ(lines[3], "+SL: setPlaybackDeviceIdentifier:phones");
  EXPECT_TRUE(lines[4].starts_with("+SL: exception ")) << lines[4];
  EXPECT_NE(lines[4].find("no such device"), std::string::npos) << lines[4];
  EXPECT_EQ(lines[5], "+SL: play self (<sound>)");
}

TEST_F(PlayingAsSoundEffect, NotesWhenTheSoundWasStarted) {
  clock.sleep(100);
  [sound playAsSoundEffect];
  EXPECT_EQ(lastSoundTime(), clock.wallSeconds());
}

TEST_F(PlayingAsSoundEffect, TheIdentifiersAreThoseOfTheirScopes) {
  devices.globalIdentifiers = {{7, "phones in general"}};
  EXPECT_EQ(toBytes([sound systemAudioDeviceID]), "phones");
  EXPECT_EQ(toBytes([sound _alertSoundAlertDeviceIdentifier]), "phones in general");
  devices.output.reset();
  EXPECT_EQ([sound systemAudioDeviceID], nil);
  EXPECT_EQ([sound _alertSoundAlertDeviceIdentifier], nil);
}

TEST_F(PlayingAsSoundEffect, WithoutASettingsFileThereIsNoDeviceInIt) {
  EXPECT_EQ([sound soundEffectDeviceID], nil);
}

}  // namespace
}  // namespace kr
