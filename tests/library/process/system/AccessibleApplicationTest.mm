// The user interface of a real application of another toolkit, over an accessibility bus of the test's own.
#import <Foundation/Foundation.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <optional>
#include <thread>

#import "library/process/KRProcess.h"
#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"
#include "platform/posix/FileDescriptor.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/Desktop.h"
#include "tests/support/Eventually.h"
#import "tests/support/NotificationRecorder.h"
#import "tests/support/RunLoop.h"
#include "tests/support/TestApplication.h"
#include "tests/support/WakeUps.h"

namespace kr {
namespace {

using testing::Child;
using testing::Desktop;
using testing::eventually;
using testing::eventuallyInRunLoop;
using testing::NotificationRecorder;
using testing::runLoop;
using Lines = std::vector<std::string>;

const std::string kRenamed = "object:property-change:accessible-name";

// Starts the application and waits for its window.
Child startAccessible() {
  std::array<int, 2> ends{};
  EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
  const posix::FileDescriptor read(ends[0]);
  posix::FileDescriptor write(ends[1]);
  Child child({KR_ACCESSIBLE_APPLICATION, "-ready", std::to_string(write.get())}, write.get());
  write.reset();
  pollfd wait{read.get(), POLLIN, 0};
  EXPECT_EQ(::poll(&wait, 1, 20'000), 1);
  return child;
}

class AccessibleApplication : public ::testing::Test {
 protected:
  AccessibleApplication() : scope_(set()) {}
  ~AccessibleApplication() override { [pool_ release]; }

  // The process object, once the application has joined the bus and an observer could be made.
  KRProcess* observed(const Child& child) {
    KRProcess* process = nil;
    EXPECT_TRUE(
        eventuallyInRunLoop([&] { return (process = [KRProcess processWithPID:child.pid()]) != nil; }));
    EXPECT_TRUE(eventuallyInRunLoop(
        [&] {
          const std::size_t before = log.lines().size();
          [process installAXObserver];
          if (log.lines().size() == before) return true;
          [process unregisterAXNotifications];
          return false;
        },
        20.0));
    failures_ = log.lines().size();
    return process;
  }

  // Lines since the observer could be made.
  [[nodiscard]] Lines logged() const {
    const Lines all = log.lines();
    return {all.begin() + static_cast<long>(failures_), all.end()};
  }

  // Whether the application tells of the change: it learns only after a while who listens.
  [[nodiscard]] bool tellsOf(const Child& child, int signal, const std::string& event) {
    return eventuallyInRunLoop(
        [&] {
          child.signal(signal);
          runLoop(0.1);
          const Lines events = notifications.values(@"event");
          return std::find(events.begin(), events.end(), event) != events.end();
        },
        10.0);
  }

  platform::testing::RecordingLog log;
  NotificationRecorder notifications{KRProcessUINotification};

 private:
  platform::Services set() {
    platform::Services services = platform::services();
    services.log = &log;
    return services;
  }

  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
  platform::ScopedServices scope_;
  std::size_t failures_ = 0;
};

class AccessibleApplicationOnItsBus : public AccessibleApplication {
 protected:
  Desktop desktop{{.windowManager = true, .bus = true, .accessibility = true}};
};

TEST_F(AccessibleApplicationOnItsBus, TellsWhatWasAskedFor) {
  const Child child = startAccessible();
  KRProcess* process = observed(child);
  [process addAXNotification:toNSString(kRenamed)];
  EXPECT_EQ(logged(), Lines{});
  ASSERT_TRUE(tellsOf(child, SIGUSR1, kRenamed));
  NSNotification* notification = [notifications.notifications() lastObject];
  EXPECT_EQ([notification object], process);
  const std::string element = toBytes([[notification userInfo] objectForKey:@"element"]);
  EXPECT_TRUE(element.starts_with(":1.")) << element;
  EXPECT_NE(element.find("/org/a11y/atspi/accessible/"), std::string::npos) << element;
  for (const std::string& event : notifications.values(@"event")) EXPECT_EQ(event, kRenamed);
}

TEST_F(AccessibleApplicationOnItsBus, ANameWithoutDetailCoversAllOfThem) {
  const Child child = startAccessible();
  KRProcess* process = observed(child);
  [process addAXNotification:@"object:property-change"];
  EXPECT_TRUE(tellsOf(child, SIGUSR1, kRenamed));
  EXPECT_EQ(logged(), Lines{});
}

TEST_F(AccessibleApplicationOnItsBus, AnotherDetailOfTheSameKindIsNotTold) {
  const Child child = startAccessible();
  KRProcess* process = observed(child);
  KRProcess* other = [[[KRProcess alloc] initWithSerialNumber:[process serialNumber]] autorelease];
  [other addAXNotification:@"object:property-change:accessible-value"];
  [process addAXNotification:toNSString(kRenamed)];
  ASSERT_TRUE(tellsOf(child, SIGUSR1, kRenamed));
  for (NSNotification* notification in notifications.notifications()) {
    EXPECT_EQ([notification object], process);
  }
}

TEST_F(AccessibleApplicationOnItsBus, WindowsAreToldToo) {
  const Child child = startAccessible();
  KRProcess* process = observed(child);
  [process addAXNotification:@"window:create"];
  EXPECT_TRUE(tellsOf(child, SIGUSR2, "window:create"));
}

TEST_F(AccessibleApplicationOnItsBus, WhatWasRemovedIsToldNoMore) {
  const Child child = startAccessible();
  KRProcess* process = observed(child);
  [process addAXNotification:toNSString(kRenamed)];
  [process addAXNotification:@"window:create"];
  ASSERT_TRUE(tellsOf(child, SIGUSR1, kRenamed));
  [process removeAXNotification:toNSString(kRenamed)];
  runLoop(0.2);
  const NSUInteger before = notifications.count();
  for (int round = 0; round < 5; ++round) {
    child.signal(SIGUSR1);
    runLoop(0.05);
  }
  EXPECT_EQ(notifications.count(), before);
  EXPECT_TRUE(tellsOf(child, SIGUSR2, "window:create"));
}

TEST_F(AccessibleApplicationOnItsBus,
       AnotherApplicationsEventsAreNotToldAndOneStaysWhenTheOtherIsUnregistered) {
  const Child one = startAccessible();
  const Child two = startAccessible();
  KRProcess* first = observed(one);
  KRProcess* second = observed(two);
  [first addAXNotification:toNSString(kRenamed)];
  ASSERT_TRUE(tellsOf(one, SIGUSR1, kRenamed));
  NSUInteger before = notifications.count();
  for (int round = 0; round < 5; ++round) {
    two.signal(SIGUSR1);
    runLoop(0.05);
  }
  EXPECT_EQ(notifications.count(), before);
  [second addAXNotification:toNSString(kRenamed)];
  EXPECT_TRUE(eventuallyInRunLoop([&] {
    two.signal(SIGUSR1);
    runLoop(0.05);
    return [[notifications.notifications() lastObject] object] == second;
  }));
  [second unregisterAXNotifications];
  runLoop(0.2);
  before = notifications.count();
  EXPECT_TRUE(eventuallyInRunLoop([&] {
    one.signal(SIGUSR1);
    runLoop(0.05);
    return notifications.count() > before;
  }));
  EXPECT_EQ([[notifications.notifications() lastObject] object], first);
}

TEST_F(AccessibleApplicationOnItsBus, AnEventThatComesWhileTheBusIsAskedIsNotLeftLying) {
  const Child one = startAccessible();
  const Child two = startAccessible();
  KRProcess* first = observed(one);
  KRProcess* second = observed(two);
  [second unregisterAXNotifications];
  [first addAXNotification:toNSString(kRenamed)];
  ASSERT_TRUE(tellsOf(one, SIGUSR1, kRenamed));
  runLoop(0.3);
  const NSUInteger before = notifications.count();
  one.signal(SIGUSR1);
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  [second installAXObserver];
  runLoop(0.3);
  EXPECT_GT(notifications.count(), before);
}

TEST_F(AccessibleApplicationOnItsBus, ANameThatIsNoneAndOneThatWasAddedAreRefused) {
  const Child child = startAccessible();
  KRProcess* process = observed(child);
  [process addAXNotification:@"AXWindowCreated"];
  [process addAXNotification:@"window:create"];
  [process addAXNotification:@"window:create"];
  const std::string description = toBytes([process description]);
  EXPECT_EQ(logged(),
            (Lines{"AX Notifications: Could not add notification AXWindowCreated for " + description,
                   "AX Notifications: Could not add notification window:create for " + description}));
}

TEST_F(AccessibleApplicationOnItsBus, AnApplicationThatTakesNoPartHasNoObserver) {
  const testing::ScratchFolder folder;
  testing::TestApplication application(folder, "Plain.app");
  KRProcess* process = [KRProcess processWithPID:application.pid()];
  [process addAXNotification:@"window:create"];
  [process addAXNotification:@"window:create"];
  const std::string notAdded =
      "AX Notifications: Could not add notification window:create for Process \"Plain\" (\?\?\?\?) 1.0";
  EXPECT_EQ(log.lines(),
            (Lines{"AX Notifications: Could not create observer for Process \"Plain\" (\?\?\?\?) 1.0",
                   notAdded, notAdded}));
}

TEST_F(AccessibleApplicationOnItsBus, NothingWakesTheProgramWhileNothingHappens) {
  const Child child = startAccessible();
  KRProcess* process = observed(child);
  [process addAXNotification:toNSString(kRenamed)];
  ASSERT_TRUE(tellsOf(child, SIGUSR1, kRenamed));
  runLoop(0.5);
  EXPECT_EQ(testing::threadCount(), 1U) << "it has no thread of its own";
  const long before = testing::voluntarySwitches();
  runLoop(2.0);
  EXPECT_LE(testing::voluntarySwitches() - before, 1) << "the end of the wait itself";
}

TEST_F(AccessibleApplicationOnItsBus, TheEndOfTheApplicationIsSurvived) {
  Child child = startAccessible();
  KRProcess* process = observed(child);
  [process addAXNotification:toNSString(kRenamed)];
  ASSERT_TRUE(tellsOf(child, SIGUSR1, kRenamed));
  child.signal(SIGKILL);
  ASSERT_TRUE(child.wait(5.0));
  runLoop(0.2);
  [process addAXNotification:@"window:create"];
  [process removeAXNotification:toNSString(kRenamed)];
  [process unregisterAXNotifications];
}

TEST_F(AccessibleApplicationOnItsBus, TheEndOfTheBusIsSurvived) {
  const Child child = startAccessible();
  KRProcess* process = observed(child);
  [process addAXNotification:toNSString(kRenamed)];
  ASSERT_TRUE(tellsOf(child, SIGUSR1, kRenamed));
  desktop.stopAccessibility();
  desktop.stopBus();
  runLoop(0.5);
  // It neither waits again and again nor runs all the time.
  const long before = testing::voluntarySwitches();
  const double used = testing::processorSeconds();
  runLoop(1.0);
  EXPECT_LE(testing::voluntarySwitches() - before, 1);
  EXPECT_LT(testing::processorSeconds() - used, 0.3);
  [process addAXNotification:@"window:create"];
  EXPECT_EQ(logged(), Lines{"AX Notifications: Could not add notification window:create for " +
                            toBytes([process description])});
  [process removeAXNotification:toNSString(kRenamed)];
  [process unregisterAXNotifications];
}

TEST_F(AccessibleApplication, WithoutAnAccessibilityBusThereIsNoObserver) {
  const Desktop desktop({.display = false, .bus = true});
  KRProcess* process = [KRProcess currentProcess];
  [process addAXNotification:@"window:create"];
  ASSERT_EQ(log.lines().size(), 2U);
  EXPECT_TRUE(log.lines()[0].starts_with("AX Notifications: Could not create observer for "))
      << log.lines()[0];
  EXPECT_TRUE(log.lines()[1].starts_with("AX Notifications: Could not add notification window:create for "));
  [process unregisterAXNotifications];
}

TEST_F(AccessibleApplication, WithoutASessionBusThereIsNoObserver) {
  const Desktop desktop({.display = false});
  KRProcess* process = [KRProcess currentProcess];
  [process addAXNotification:@"window:create"];
  EXPECT_EQ(log.lines().size(), 2U);
  [process unregisterAXNotifications];
}

TEST_F(AccessibleApplication, AProcessThatHasEndedHasNoElement) {
  const Desktop desktop({.display = false});
  const testing::ScratchFolder folder;
  testing::TestApplication application(folder, "Plain.app");
  KRProcess* process = [KRProcess processWithPID:application.pid()];
  static_cast<void>([process name]);
  application.child().signal(SIGKILL);
  ASSERT_TRUE(application.child().wait(5.0));
  [process installAXObserver];
  EXPECT_EQ(
      log.lines(),
      Lines{"AX Notifications: Could not create application object for Process \"Plain\" (\?\?\?\?) 1.0"});
}

}  // namespace
}  // namespace kr
