#import "library/sound/SoundEffectSettings.h"

#include <gtest/gtest.h>

namespace kr {
namespace {

constexpr bool kYosemite = true;
constexpr bool kMavericks = false;
constexpr uid_t kUser = 501;

class SoundEffectSettings : public ::testing::Test {
 protected:
  ~SoundEffectSettings() override { [pool_ release]; }

  static bool is(NSString* found, NSString* wanted) { return [found isEqual:wanted]; }

  static NSDictionary* user(NSString* device) {
    return @{@"current default system output device" : device, @"other" : @"x"};
  }

 private:
  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
};

TEST_F(SoundEffectSettings, TheFirstOfThePreferredDevicesIsTaken) {
  NSDictionary* settings = @{
    @"preferred devices" : @{
      @"system output" : @[ @{@"uid" : @"first"}, @{@"uid" : @"second"} ],
      @"output" : @[ @{@"uid" : @"main"} ]
    },
    @"501" : user(@"of the user")
  };
  EXPECT_TRUE(is(soundEffectDeviceInSettings(settings, kYosemite, kUser), @"first"));
}

TEST_F(SoundEffectSettings, AMissingLevelIsNoDevice) {
  for (NSDictionary* settings in @[
         @{},
         @{@"preferred devices" : @{}},
         @{@"preferred devices" : @[]},
         @{@"preferred devices" : @{@"system output" : @[]}},
         @{@"preferred devices" : @{@"system output" : @{@"uid" : @"x"}}},
         @{@"preferred devices" : @{@"system output" : @[ @"x" ]}},
         @{@"preferred devices" : @{@"system output" : @[ @{@"name" : @"x"} ]}},
         @{@"preferred devices" : @{@"system output" : @[
           @{@"uid" : @5}
         ]}},
         @{@"preferred devices" : @{@"system output" : @[ @{}, @{@"uid" : @"second"} ]}}
       ]) {
    EXPECT_EQ(soundEffectDeviceInSettings(settings, kYosemite, kUser), nil);
  }
  EXPECT_EQ(soundEffectDeviceInSettings(nil, kYosemite, kUser), nil);
  EXPECT_EQ(soundEffectDeviceInSettings(nil, kMavericks, kUser), nil);
}

TEST_F(SoundEffectSettings, OlderSystemsHaveADeviceForEachUser) {
  NSDictionary* settings = @{@"501" : user(@"mine"), @"502" : user(@"yours"), @"0" : user(@"all")};
  EXPECT_TRUE(is(soundEffectDeviceInSettings(settings, kMavericks, 501), @"mine"));
  EXPECT_TRUE(is(soundEffectDeviceInSettings(settings, kMavericks, 502), @"yours"));
}

TEST_F(SoundEffectSettings, OlderSystemsHaveADeviceForAllOthers) {
  EXPECT_TRUE(
      is(soundEffectDeviceInSettings(@{@"502" : user(@"yours"), @"0" : user(@"all")}, kMavericks, kUser),
         @"all"));
  EXPECT_TRUE(is(soundEffectDeviceInSettings(
                     @{@"501" : @{@"other" : @"x"},
                       @"0" : user(@"all")},
                     kMavericks, kUser),
                 @"all"));
  EXPECT_EQ(soundEffectDeviceInSettings(
                @{@"502" : user(@"yours"),
                  @"0" : @{}},
                kMavericks, kUser),
            nil);
}

TEST_F(SoundEffectSettings, OlderSystemsDoNotLookAtThePreferredDevices) {
  NSDictionary* settings = @{@"preferred devices" : @{@"system output" : @[ @{@"uid" : @"first"} ]}};
  EXPECT_EQ(soundEffectDeviceInSettings(settings, kMavericks, kUser), nil);
}

}  // namespace
}  // namespace kr
