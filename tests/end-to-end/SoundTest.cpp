// The done sound, as it is heard on a device of a sound server of the test's own.
#include <thread>

#include "tests/end-to-end/Installation.h"
#include "tests/end-to-end/Products.h"
#include "tests/support/Eventually.h"
#include "tests/support/SoundServer.h"

namespace kr::testing {
namespace {

// The loudest tenth of a second of the sound, as it is and at a quarter of the volume.
constexpr double kFull = 0.12;
constexpr double kQuarterAtMost = 0.06;
constexpr double kSilent = 0.001;

class SoundOfAnInstallation : public Installation {
 protected:
  void installSmall(const Lines& more) {
    destination_ = scratch_.folder("Applications") + "/Small.app";
    install(smallApplication(scratch_ / "Small.app"), destination_, more);
    expectInstalled(destination_);
  }

  std::string destination_;
};

class SoundOnAServer : public SoundOfAnInstallation {
 protected:
  SoundServer server_{{.devices = {"main", "effects"}, .defaultDevice = "effects"}};
};

TEST_F(SoundOnAServer, IsHeardAtTheEndOnTheDefaultDeviceAndOnNoOther) {
  const Recording main(server_, "main");
  const Recording effects(server_, "effects");
  installSmall({"-completionSound", "YES"});
  EXPECT_TRUE(eventually([&] { return effects.seconds() > 0.7; }, 10));
  EXPECT_GT(effects.loudness(), kFull);
  EXPECT_LT(main.loudness(), kSilent);
  expectQuitsOnOK();
}

TEST_F(SoundOnAServer, IsAsLoudAsAlertsAre) {
  const Recording effects(server_, "effects");
  installSmall({"-completionSound", "YES", "-com.apple.sound.beep.volume", "0.47"});
  EXPECT_TRUE(eventually([&] { return effects.seconds() > 0.3; }, 10));
  EXPECT_GT(effects.loudness(), kSilent);
  EXPECT_LT(effects.loudness(), kQuarterAtMost);
}

TEST_F(SoundOnAServer, IsNotHeardForAnyOtherValue) {
  const Recording effects(server_, "effects");
  installSmall({"-completionSound", "yes"});
  // A device of this server puts out what it has got within two seconds.
  std::this_thread::sleep_for(std::chrono::seconds(3));
  EXPECT_LT(effects.loudness(), kSilent);
}

TEST_F(SoundOnAServer, IsNotHeardByAUserWhoWantsNone) {
  const Recording effects(server_, "effects");
  installSmall({"-completionSound", "YES", "-nosound", "YES"});
  std::this_thread::sleep_for(std::chrono::seconds(3));
  EXPECT_LT(effects.loudness(), kSilent);
}

TEST_F(SoundOnAServer, IsHeardWithTheErrorOfAMissingSource) {
  const Recording effects(server_, "effects");
  start({"-completionSound", "YES", "-productName", "Notes"});
  expectLine("missing source path");
  EXPECT_TRUE(eventually([&] { return effects.loudness() > kFull; }, 10));
  expectQuitsOnOK();
}

TEST_F(SoundOnAServer, TheInstallerMayQuitInTheMiddleOfIt) {
  installSmall({"-completionSound", "YES", "-completionQuit", "0.2"});
  expectLine("quit delay: 0.2");
  expectEnds(10);
}

TEST_F(SoundOfAnInstallation, WithoutAServerTheInstallerOnlyLogs) {
  const NoSoundServer nobody;
  installSmall({"-completionSound", "YES"});
  expectLine("*** no sound: Connection refused");
  expectQuitsOnOK();
}

TEST_F(SoundOfAnInstallation, AServerThatNeverAnswersDoesNotHoldTheInstallerUp) {
  const SilentSoundServer silent;
  installSmall({"-completionSound", "YES", "-completionQuit", "2"});
  expectLine("*** no sound: the sound server does not answer", 3);
  expectEnds(10);
}

}  // namespace
}  // namespace kr::testing
