// What the process object asks of other applications, with two of them under a real window manager and on a
// real bus.
#import <Foundation/Foundation.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <optional>

#import "library/process/KRProcess.h"
#include "platform/Services.h"
#include "platform/linux/ProcFS.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/Desktop.h"
#include "tests/support/Eventually.h"
#include "tests/support/ReportingProgram.h"
#include "tests/support/TestApplication.h"
#include "tests/support/WindowView.h"

namespace kr {
namespace {

using testing::Desktop;
using testing::eventually;
using testing::OwnWindow;
using testing::ReportingProgram;
using testing::ScratchFolder;
using testing::TestApplication;
using testing::WindowView;
using Lines = std::vector<std::string>;

constexpr double kStart = 20;  // seconds that a window may take to open on a busy machine

// The windows A and B belong to the one, T to the other, S to the test itself, in this order of age.
class TwoApplications : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(eventually([&] { return view.stacking() == "SABT" && view.active() == "T"; }, kStart))
        << view.stacking();
    // A server of the same name may have been gone for a test before.
    ASSERT_TRUE(eventually([&] { return [KRProcess frontProcess] != nil; }));
  }
  ~TwoApplications() override { [pool_ release]; }

  TestApplication open(const std::string& name, const std::vector<std::string>& words,
                       const std::string& expected) {
    TestApplication application(folder, name, {}, words);
    EXPECT_TRUE(eventually([&] { return view.stacking() == expected; }, kStart)) << view.stacking();
    return application;
  }

  std::unique_ptr<OwnWindow> openOwn() {
    auto window = std::make_unique<OwnWindow>("S");
    EXPECT_TRUE(eventually([&] { return view.stacking() == "S"; }, kStart)) << view.stacking();
    return window;
  }

  static KRProcess* object(const TestApplication& application) {
    return [KRProcess processWithPID:application.pid()];
  }

 private:
  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];

 protected:
  Desktop desktop{{.windowManager = true}};
  ScratchFolder folder;
  WindowView view;
  std::unique_ptr<OwnWindow> own = openOwn();
  TestApplication one = open("One.app", {"window", "A", "window", "B"}, "SAB");
  TestApplication two = open("Two.app", {"window", "T"}, "SABT");
};

TEST_F(TwoApplications, AllWindowsComeForwardOrTheFrontOneOnly) {
  EXPECT_TRUE([object(two) isFrontProcess]);
  [object(one) setFrontProcessFrontWindowOnly];
  EXPECT_TRUE(eventually([&] { return view.stacking() == "SATB" && view.active() == "B"; }))
      << view.stacking();
  EXPECT_TRUE([object(one) isFrontProcess]);
  EXPECT_FALSE([object(two) isFrontProcess]);
  [object(two) setFrontProcess];
  ASSERT_TRUE(eventually([&] { return view.active() == "T"; }));
  [object(one) setFrontProcess];
  EXPECT_TRUE(eventually([&] { return view.stacking() == "STAB" && view.active() == "B"; }))
      << view.stacking();
}

TEST_F(TwoApplications, AHiddenOneIsAwayUntilItIsShown) {
  [object(one) setHidden:YES];
  EXPECT_TRUE(eventually([&] { return view.iconified() == "AB"; })) << view.iconified();
  [object(one) setHidden:NO];
  EXPECT_TRUE(eventually([&] { return view.iconified().empty(); })) << view.iconified();
}

TEST_F(TwoApplications, TheRunningProgramHidesAndShowsItself) {
  KRProcess* self = [KRProcess currentProcess];
  [self setHidden:YES];
  EXPECT_TRUE(eventually([&] { return view.iconified() == "S"; })) << view.iconified();
  [self setHidden:NO];
  EXPECT_TRUE(eventually([&] { return view.iconified().empty(); })) << view.iconified();
  [self setFrontProcess];
  EXPECT_TRUE(eventually([&] { return [self isFrontProcess] != NO; }));
}

TEST_F(TwoApplications, SwitchingOutPassesThroughTheRunningProgramAndWakesTheTarget) {
  const auto state = [&] { return platform::procfs::status(one.pid())->state; };
  one.child().signal(SIGSTOP);
  ASSERT_TRUE(eventually([&] { return state() == 'T'; }));
  [object(one) temporarilySwitchOut];
  // The program's own window stands above the other application's: it was in front before B was.
  EXPECT_TRUE(eventually([&] { return view.stacking() == "ATSB" && view.active() == "B"; }))
      << view.stacking();
  EXPECT_TRUE(eventually([&] { return state() == 'S'; }));
  EXPECT_TRUE([object(one) isFrontProcess]);
}

TEST_F(TwoApplications, AnObjectOfAProcessThatHasEndedMovesNothing) {
  KRProcess* process = object(one);
  one.child().signal(SIGKILL);
  ASSERT_TRUE(one.child().wait(5.0));
  ASSERT_TRUE(eventually([&] { return view.stacking() == "ST"; }));
  [process setFrontProcess];
  [process setFrontProcessFrontWindowOnly];
  [process setHidden:YES];
  [process wakeUp];
  EXPECT_FALSE(eventually([&] { return view.stacking() != "ST" || view.active() != "T"; }, 0.3));
}

// A second process takes the events that this one sends.
class EventsToAnother : public ::testing::Test {
 protected:
  EventsToAnother() : scope_(set()) {}
  ~EventsToAnother() override { [pool_ release]; }

  // The other process is no application by itself: it has neither bundle nor window.
  static KRProcess* object(pid_t pid) {
    return [KRProcess processWithSerialNumber:platform::procfs::serialNumber(pid).value()];
  }

  template <class Code>
  static double seconds(Code code) {
    const auto start = std::chrono::steady_clock::now();
    code();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }

  Desktop desktop{{.display = false, .bus = true}};
  platform::testing::RecordingLog log;

 private:
  platform::Services set() {
    platform::Services services = platform::services();
    services.log = &log;
    return services;
  }

  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
  platform::ScopedServices scope_;
};

TEST_F(EventsToAnother, AllThreeFormsArrive) {
  ReportingProgram listener(KR_EVENT_LISTENER);
  KRProcess* other = object(listener.pid());
  [other sendAppleEventClass:'SinS' eventID:'Ping'];
  EXPECT_TRUE(listener.writes("SinS Ping 0"));
  [other sendAppleEventClass:'SinS' eventID:'Wait' timeout:5.0F];
  EXPECT_TRUE(listener.writes("SinS Wait 1"));
  [other sendAppleEventClass:'SinS' eventID:'Done' parameter:@"Product \u00E4 1.0"];
  EXPECT_TRUE(listener.writes("SinS Done 0 [Product \xC3\xA4 1.0]"));
  EXPECT_EQ(listener.lines(), (Lines{"SinS Ping 0", "SinS Wait 1", "SinS Done 0 [Product \xC3\xA4 1.0]"}));
  EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(EventsToAnother, AnEventThatIsNotAnsweredIsGivenUpAfterItsTime) {
  ReportingProgram listener(KR_EVENT_LISTENER, {"-answer", "never"});
  KRProcess* other = object(listener.pid());
  const double half = seconds([&] { [other sendAppleEventClass:'SinS' eventID:'Wait' timeout:0.5F]; });
  EXPECT_GE(half, 0.5);
  EXPECT_LT(half, 2.0);
  // Less than a sixtieth of a second is no tick at all.
  const double none = seconds([&] { [other sendAppleEventClass:'SinS' eventID:'Wait' timeout:0.01F]; });
  EXPECT_LT(none, 0.4);
  EXPECT_EQ(log.lines(), (Lines{"*** event error: -1712", "*** event error: -1712"}));
}

TEST_F(EventsToAnother, OnlyAWaitingEventHearsThatItWasRefused) {
  ReportingProgram listener(KR_EVENT_LISTENER, {"-answer", "refused"});
  KRProcess* other = object(listener.pid());
  [other sendAppleEventClass:'SinS' eventID:'Ping'];
  [other sendAppleEventClass:'SinS' eventID:'Done' parameter:@"x"];
  EXPECT_EQ(log.lines(), Lines{});
  [other sendAppleEventClass:'SinS' eventID:'Wait' timeout:5.0F];
  EXPECT_EQ(log.lines(), Lines{"*** event error: -1708"});
}

TEST_F(EventsToAnother, AProcessThatHasEndedIsAnErrorForTheFormsThatSayThem) {
  const ScratchFolder folder;
  TestApplication application(folder, "Gone.app");
  KRProcess* other = [KRProcess processWithPID:application.pid()];
  application.child().signal(SIGKILL);
  ASSERT_TRUE(application.child().wait(5.0));
  [other sendAppleEventClass:'SinS' eventID:'Ping'];
  [other sendAppleEventClass:'SinS' eventID:'Wait' timeout:1.0F];
  [other sendAppleEventClass:'SinS' eventID:'Done' parameter:@"x"];
  EXPECT_EQ(log.lines(), (Lines{"*** event error: -600", "*** event error: -600"}));
}

TEST_F(EventsToAnother, WithoutABusBothSay) {
  ReportingProgram listener(KR_EVENT_LISTENER);
  KRProcess* other = object(listener.pid());
  desktop.stopBus();
  [other sendAppleEventClass:'SinS' eventID:'Ping'];
  [other sendAppleEventClass:'SinS' eventID:'Wait' timeout:1.0F];
  [other sendAppleEventClass:'SinS' eventID:'Done' parameter:@"x"];
  EXPECT_EQ(log.lines(), (Lines{"*** event error: -609", "*** event error: -609"}));
}

}  // namespace
}  // namespace kr
