#include "library/sound/SoundEffectDevice.h"

#include <gtest/gtest.h>

#include "platform/Services.h"
#include "platform/testing/InMemoryAudioDevices.h"

namespace kr {
namespace {

using platform::AudioScope;

class SoundEffectDevice : public ::testing::Test {
 protected:
  SoundEffectDevice() : scope_(set()) {}

  platform::testing::InMemoryAudioDevices devices;

 private:
  platform::Services set() {
    platform::Services services = platform::services();
    services.audioDevices = &devices;
    return services;
  }

  platform::ScopedServices scope_;
};

TEST_F(SoundEffectDevice, IsTheDefaultSystemOutput) {
  devices.devices = {{3, {"Speakers", "Maker", "speakers-uid"}}, {7, {"Phones", "Maker", "phones-uid"}}};
  devices.output = 7;
  EXPECT_EQ(systemOutputIdentifier(AudioScope::output), "phones-uid");
}

TEST_F(SoundEffectDevice, IsAskedInTheScopeThatIsWanted) {
  devices.devices = {{7, {"Phones", "Maker", "output-uid"}}};
  devices.globalIdentifiers = {{7, "global-uid"}};
  devices.output = 7;
  EXPECT_EQ(systemOutputIdentifier(AudioScope::output), "output-uid");
  EXPECT_EQ(systemOutputIdentifier(AudioScope::global), "global-uid");
}

TEST_F(SoundEffectDevice, IsNoneWithoutAnOutput) {
  devices.devices = {{3, {"Speakers", "Maker", "speakers-uid"}}};
  EXPECT_EQ(systemOutputIdentifier(AudioScope::output), std::nullopt);
}

TEST_F(SoundEffectDevice, IsNoneWhereItsIdentifierCannotBeRead) {
  devices.devices = {{3, {"Speakers", "Maker", std::nullopt}}};
  devices.output = 3;
  EXPECT_EQ(systemOutputIdentifier(AudioScope::output), std::nullopt);
  devices.output = 4;
  EXPECT_EQ(systemOutputIdentifier(AudioScope::output), std::nullopt);
}

TEST_F(SoundEffectDevice, TheListNamesEveryDeviceThatCanBeRead) {
  devices.devices = {{1, {"Speakers", "Maker Inc.", "a:b"}},
                     {2, {std::nullopt, "Maker Inc.", "c"}},
                     {3, {"Phones", std::nullopt, "d"}},
                     {4, {"Phones", "Maker Inc.", std::nullopt}},
                     {5, {"", "", ""}}};
  EXPECT_EQ(audioDeviceLines(),
            (std::vector<std::string>{"   device Speakers by Maker Inc. id a:b", "   device  by  id "}));
}

TEST_F(SoundEffectDevice, TheListIsEmptyWithoutDevices) {
  EXPECT_TRUE(audioDeviceLines().empty());
}

}  // namespace
}  // namespace kr
