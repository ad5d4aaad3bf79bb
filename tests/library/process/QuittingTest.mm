#import "tests/library/process/ProcessFixture.h"

namespace kr {
namespace {

using platform::AppleEvent;
using platform::AppleEventError;
using platform::SerialNumber;
using platform::testing::kNeverEnds;
using testing::Lines;
using testing::ProcessFixture;

class Quitting : public ProcessFixture {};

TEST_F(Quitting, AProcessThatQuitsIsLoggedByItsName) {
  KRProcess* process = object({.pid = 10, .name = "Product"});
  EXPECT_TRUE([process quitRunningApplicationWithTimeout:1.0F]);
  EXPECT_EQ(log.lines(), Lines{"quit Product: terminated after 0.001s (1 attempts)"});
  EXPECT_TRUE(events.sent.empty());
}

TEST_F(Quitting, QuitAsksPolitelyAndByForceForFourSecondsEach) {
  KRProcess* process = object({.pid = 10, .name = "Product"});
  control.setManners(10, {.politeRequests = kNeverEnds, .forcedRequests = kNeverEnds});
  [process quit];
  EXPECT_NEAR(clock.monotonicSeconds(), 8.0, 0.003);
  EXPECT_EQ(log.lines(), Lines{"quitting Product failed"});
}

TEST_F(Quitting, QuitSendsNoEventWhenTheProcessHasGone) {
  [object({.pid = 10, .name = "Product"}) quit];
  EXPECT_TRUE(events.sent.empty());
}

TEST_F(Quitting, QuitFallsBackOnTheEventByItsSerialNumber) {
  const SerialNumber serial = table.add({.pid = 10, .name = "Product"});
  control.available = false;
  [[KRProcess processWithSerialNumber:serial] quit];
  EXPECT_EQ(log.lines(), Lines{"cannot quit Product: NSRunningApplication not available"});
  ASSERT_EQ(events.sent.size(), 1U);
  const AppleEvent& event = events.sent.front();
  EXPECT_EQ(event.eventClass, 0x61657674U);
  EXPECT_EQ(event.eventID, 0x71756974U);
  EXPECT_EQ(event.target, (std::variant<pid_t, SerialNumber>(serial)));
  EXPECT_EQ(event.directText, std::nullopt);
  EXPECT_EQ(event.sendMode, 1);
  EXPECT_EQ(event.sendPriority, 1);
  EXPECT_EQ(event.timeoutTicks, -1);
}

TEST_F(Quitting, QuitFallsBackOnTheEventWithoutAProcessID) {
  KRProcess* process = object({.pid = 10, .name = "Product"});
  EXPECT_EQ(toBytes([process name]), "Product");
  table.endPID(10);
  [process quit];
  EXPECT_EQ(log.lines(), Lines{"cannot quit Product: no pid"});
  EXPECT_EQ(events.sent.size(), 1U);
}

TEST_F(Quitting, EachStepOfTheEventHasItsOwnErrorLine) {
  control.available = false;
  KRProcess* process = object({.pid = 10, .name = "P"});
  events.answer = AppleEventError{AppleEventError::Step::address, -1};
  [process quit];
  events.answer = AppleEventError{AppleEventError::Step::build, -2};
  [process quit];
  events.answer = AppleEventError{AppleEventError::Step::send, -600};
  [process quit];
  const std::string unavailable = "cannot quit P: NSRunningApplication not available";
  EXPECT_EQ(log.lines(), (Lines{unavailable, "quitting P failed (-1; could not create descriptor)",
                                unavailable, "quitting P failed (-2; could not create event)", unavailable,
                                "quitting P failed (-600; could not send event)"}));
}

TEST_F(Quitting, ForceQuitOfAProcessWithoutIDDoesNothing) {
  KRProcess* process = [KRProcess processWithSerialNumber:{88888, 10}];
  [process forceQuit];
  EXPECT_TRUE(log.lines().empty());
  EXPECT_EQ(control.forcedRequests(0), 0);
}

}  // namespace
}  // namespace kr
