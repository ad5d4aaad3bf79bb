// The class of utilities over services in memory, with an autorelease pool around each test. Its distributed
// notifications stay inside the program: nothing is started for them.
#pragma once

#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/Services.h"
#include "platform/testing/FixedDesktop.h"
#include "platform/testing/InMemoryMenuBar.h"
#include "platform/testing/InMemoryProcessTable.h"
#include "platform/testing/InMemoryWindowOrder.h"
#include "platform/testing/ManualClock.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/ReplacedMethod.h"

namespace kr::testing {

using Lines = std::vector<std::string>;

class UtilitiesFixture : public ::testing::Test {
 protected:
  UtilitiesFixture()
      : pool_([[NSAutoreleasePool alloc] init]),
        center_(ReplacedMethod::ofClass([NSDistributedNotificationCenter class], @selector(defaultCenter),
                                        ownCenter)) {
    platform::Services set = platform::services();
    set.applications = &applications_;
    set.clipboard = &clipboard_;
    set.clock = &clock_;
    set.doNotDisturb = &doNotDisturb_;
    set.fileSystems = &fileSystems_;
    set.launcher = &launcher_;
    set.log = &log_;
    set.menuBar = &menuBar_;
    set.processes = &processes_;
    set.program = &program_;
    set.secureInput = &secureInput_;
    set.systemVersion = &system_;
    set.userInput = &userInput_;
    set.windowOrder = &windowOrder_;
    services_.emplace(set);
  }
  ~UtilitiesFixture() override { [pool_ release]; }

  // Stands for the distributed centre.
  static NSNotificationCenter* ownCenter(Class, SEL) {
    static NSNotificationCenter* center = [[NSNotificationCenter alloc] init];
    return center;
  }

  platform::testing::RecordingApplications applications_;
  platform::testing::FixedClipboard clipboard_;
  platform::testing::ManualClock clock_;
  platform::testing::FixedDoNotDisturb doNotDisturb_;
  platform::testing::FixedFileSystems fileSystems_;
  platform::testing::FixedLauncher launcher_;
  platform::testing::RecordingLog log_;
  platform::testing::InMemoryMenuBar menuBar_;
  platform::testing::FixedProgram program_;
  platform::testing::FixedSecureInput secureInput_;
  platform::testing::FixedSystemVersion system_;
  platform::testing::InMemoryProcessTable processes_;
  platform::testing::FixedUserInput userInput_;
  platform::testing::InMemoryWindowOrder windowOrder_;

 private:
  NSAutoreleasePool* pool_;
  ReplacedMethod center_;
  std::optional<platform::ScopedServices> services_;
};

}  // namespace kr::testing
