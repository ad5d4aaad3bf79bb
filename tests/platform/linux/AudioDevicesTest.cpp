#include "platform/AudioDevices.h"

#include <gtest/gtest.h>

#include <chrono>

#include "platform/Services.h"
#include "platform/SystemServices.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/Eventually.h"
#include "tests/support/SoundServer.h"

namespace kr::platform {
namespace {

using kr::testing::eventually;
using kr::testing::NoSoundServer;
using kr::testing::SilentSoundServer;
using kr::testing::SoundServer;
using Lines = std::vector<std::string>;

class AudioDevicesTest : public ::testing::Test {
 protected:
  AudioDevicesTest() : scope_(set()) {}

  static std::optional<std::string> outputIdentifier(AudioScope scope = AudioScope::output) {
    const auto output = systemAudioDevices().systemOutput();
    return output ? systemAudioDevices().uniqueIdentifier(*output, scope) : std::nullopt;
  }

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

TEST_F(AudioDevicesTest, TheSystemOutputIsTheServersDefaultDevice) {
  const SoundServer server({.devices = {"one", "two", "three"}, .defaultDevice = "two"});
  EXPECT_EQ(outputIdentifier(), "two");
  EXPECT_EQ(outputIdentifier(AudioScope::global), "two");
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(AudioDevicesTest, AnotherDefaultDeviceIsNoticed) {
  const SoundServer server({.devices = {"one", "two"}, .defaultDevice = "one"});
  EXPECT_EQ(outputIdentifier(), "one");
  ASSERT_EQ(std::system("pactl set-default-sink two"), 0);
  EXPECT_EQ(outputIdentifier(), "two");
}

TEST_F(AudioDevicesTest, EveryDeviceHasANameAMakerAndAnIdentifier) {
  const SoundServer server({.devices = {"one", "two"}});
  const std::vector<AudioDevice> all = systemAudioDevices().all();
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].name, "one-device");
  EXPECT_EQ(all[0].maker, "module-null-sink.c");
  EXPECT_EQ(all[0].identifier, "one");
  EXPECT_EQ(all[1].identifier, "two");
}

TEST_F(AudioDevicesTest, ALongNameIsCutBetweenTwoCharacters) {
  const SoundServer server({.devices = {"one"}});
  std::string name;
  for (int count = 0; count < 40; ++count) name += "\xC3\xA9";
  const std::string load =
      "pactl load-module module-null-sink sink_name=long sink_properties=device.description=";
  ASSERT_EQ(std::system((load + name + " >/dev/null").c_str()), 0);
  const std::vector<AudioDevice> all = systemAudioDevices().all();
  ASSERT_FALSE(all.empty());
  EXPECT_EQ(all.back().name, name.substr(0, 62));
}

TEST_F(AudioDevicesTest, ADeviceThatHasGoneHasNoIdentifier) {
  const SoundServer server;
  EXPECT_EQ(systemAudioDevices().uniqueIdentifier(12345, AudioScope::output), std::nullopt);
}

TEST_F(AudioDevicesTest, AServerWithoutDevicesHasNoOutput) {
  const SoundServer server({.devices = {}, .defaultDevice = ""});
  EXPECT_EQ(systemAudioDevices().systemOutput(), std::nullopt);
  EXPECT_TRUE(systemAudioDevices().all().empty());
}

TEST_F(AudioDevicesTest, WithoutAServerThereIsNothingAndOneLineInTheLog) {
  const NoSoundServer nobody;
  const double waited = seconds([] {
    for (int count = 0; count < 3; ++count) {
      EXPECT_EQ(systemAudioDevices().systemOutput(), std::nullopt);
      EXPECT_TRUE(systemAudioDevices().all().empty());
    }
  });
  EXPECT_LT(waited, 0.5);
  ASSERT_EQ(log.lines(), Lines{"*** no sound: Connection refused"});
}

TEST_F(AudioDevicesTest, NoServerIsStarted) {
  const NoSoundServer nobody;
  (void)systemAudioDevices().systemOutput();
  const kr::testing::ScratchFolder empty;
  const kr::testing::ScopedVariable server("PULSE_SERVER", std::nullopt);
  const kr::testing::ScopedVariable runtime("PULSE_RUNTIME_PATH", empty.path());
  const kr::testing::ScopedVariable home("HOME", empty.path());
  EXPECT_EQ(systemAudioDevices().systemOutput(), std::nullopt);
}

TEST_F(AudioDevicesTest, AServerThatNeverAnswersIsWaitedForOnce) {
  const SilentSoundServer silent;
  const double first = seconds([] { EXPECT_EQ(systemAudioDevices().systemOutput(), std::nullopt); });
  EXPECT_GT(first, 0.9);
  EXPECT_LT(first, 2.0);
  EXPECT_LT(seconds([] { EXPECT_TRUE(systemAudioDevices().all().empty()); }), 0.2);
  EXPECT_EQ(log.lines(), Lines{"*** no sound: the sound server does not answer"});
}

TEST_F(AudioDevicesTest, AServerThatHangsIsGivenUpAndFoundAgain) {
  SoundServer server({.devices = {"one"}, .defaultDevice = "one"});
  EXPECT_EQ(outputIdentifier(), "one");
  server.hang();
  const double waited = seconds([] {
    for (int count = 0; count < 10; ++count) EXPECT_EQ(outputIdentifier(), std::nullopt);
  });
  EXPECT_LT(waited, 3.0) << "one second for the answer, one for a new connection";
  server.goOn();
  EXPECT_TRUE(eventually([] { return outputIdentifier() == "one"; }));
}

TEST_F(AudioDevicesTest, ANewServerIsFoundAfterTheOldOneHasGone) {
  {
    SoundServer server({.devices = {"one"}, .defaultDevice = "one"});
    EXPECT_EQ(outputIdentifier(), "one");
    server.stop();
    EXPECT_TRUE(eventually([] { return outputIdentifier() == std::nullopt; }));
  }
  const SoundServer next({.devices = {"two"}, .defaultDevice = "two"});
  EXPECT_EQ(outputIdentifier(), "two");
}

}  // namespace
}  // namespace kr::platform
