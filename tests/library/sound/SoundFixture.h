// Sounds over services in memory, with an autorelease pool around each test. Nothing is heard.
#pragma once

#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#import "library/sound/SoundExtensions.h"
#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"
#include "platform/testing/FixedDesktop.h"
#include "platform/testing/InMemoryAudioDevices.h"
#include "platform/testing/ManualClock.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/SoundServer.h"

namespace kr::testing {

using Lines = std::vector<std::string>;

class SoundFixture : public ::testing::Test {
 protected:
  SoundFixture() : scope_(set()) { folders.homeFolder = scratch.folder("home"); }
  ~SoundFixture() override { [pool_ release]; }

  // Sets a user default for this run of the program.
  static void setDefault(NSString* key, id value) {
    [[NSUserDefaults standardUserDefaults] registerDefaults:@{key : value}];
  }

  static Lines names(NSArray* strings) { return toByteStrings(strings); }

  ScratchFolder scratch;
  platform::testing::FixedFolders folders;
  platform::testing::InMemoryAudioDevices devices;
  platform::testing::ManualClock clock;
  platform::testing::RecordingLog log;

 private:
  platform::Services set() {
    platform::Services services = platform::services();
    services.folders = &folders;
    services.audioDevices = &devices;
    services.clock = &clock;
    services.log = &log;
    return services;
  }

  NoSoundServer nobody_;
  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
  platform::ScopedServices scope_;
};

}  // namespace kr::testing
