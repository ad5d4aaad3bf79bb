// The process object over services in memory, with an autorelease pool around each test.
#pragma once

#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#import "library/process/KRProcess.h"
#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"
#include "platform/testing/InMemoryAccessibility.h"
#include "platform/testing/InMemoryAppleEvents.h"
#include "platform/testing/InMemoryProcessControl.h"
#include "platform/testing/InMemoryProcessEvents.h"
#include "platform/testing/InMemoryProcessTable.h"
#include "platform/testing/InMemoryWindowOrder.h"
#include "platform/testing/ManualClock.h"
#include "platform/testing/RecordingLog.h"

namespace kr::testing {

class ProcessFixture : public ::testing::Test {
 protected:
  ProcessFixture() : scope_(set()) {}
  ~ProcessFixture() override { [pool_ release]; }

  KRProcess* object(const platform::testing::InMemoryProcess& process) {
    return [KRProcess processWithSerialNumber:table.add(process)];
  }

  // The running program: one process for all tests, because its object is kept for the program's life.
  platform::SerialNumber addCurrent() {
    const platform::SerialNumber serial{0xFFFF, 7};
    table.add({.pid = 7, .name = "Self", .serial = serial});
    table.setCurrent(serial);
    return serial;
  }

  // The same for all tests: notifications are installed once per program.
  static platform::testing::InMemoryProcessEvents& processEvents() {
    static auto& shared = *new platform::testing::InMemoryProcessEvents;
    return shared;
  }

  platform::testing::InMemoryProcessTable table;
  platform::testing::InMemoryProcessControl control{table};
  platform::testing::InMemoryWindowOrder order;
  platform::testing::InMemoryAppleEvents events;
  platform::testing::InMemoryAccessibility accessibility;
  platform::testing::ManualClock clock;
  platform::testing::RecordingLog log;

 private:
  platform::Services set() {
    platform::Services services = platform::services();
    services.processes = &table;
    services.processControl = &control;
    services.processEvents = &processEvents();
    services.windowOrder = &order;
    services.accessibility = &accessibility;
    services.appleEvents = &events;
    services.clock = &clock;
    services.log = &log;
    return services;
  }

  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
  platform::ScopedServices scope_;
};

using Lines = std::vector<std::string>;

}  // namespace kr::testing
