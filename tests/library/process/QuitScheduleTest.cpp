#include "library/process/QuitSchedule.h"

#include <gtest/gtest.h>

#include <functional>

#include "platform/Services.h"
#include "platform/testing/InMemoryProcessControl.h"
#include "platform/testing/ManualClock.h"
#include "platform/testing/RecordingLog.h"

namespace kr {
namespace {

using platform::testing::kNeverEnds;
using Lines = std::vector<std::string>;

constexpr pid_t kPID = 42;

class QuitSchedule : public ::testing::Test {
 protected:
  QuitSchedule() : scope_(set()) { table.add({.pid = kPID, .name = "Product"}); }

  bool quit(float seconds, pid_t pid = kPID) { return quitWithTimeout(pid, "Product", seconds); }

  platform::testing::InMemoryProcessTable table;
  platform::testing::InMemoryProcessControl control{table};
  platform::testing::ManualClock clock;
  platform::testing::RecordingLog log;

 private:
  platform::Services set() {
    platform::Services services = platform::services();
    services.processControl = &control;
    services.clock = &clock;
    services.log = &log;
    return services;
  }

  platform::ScopedServices scope_;
};

TEST_F(QuitSchedule, AProcessThatQuitsAtOnceTakesOneRequestAndAMillisecond) {
  EXPECT_TRUE(quit(4.0F));
  EXPECT_EQ(log.lines(), Lines{"quit Product: terminated after 0.001s (1 attempts)"});
  EXPECT_EQ(clock.sleeps(), std::vector<double>{0.001});
  EXPECT_EQ(control.politeRequests(kPID), 1);
  EXPECT_EQ(control.forcedRequests(kPID), 0);
}

TEST_F(QuitSchedule, TheRequestIsRepeatedEveryMillisecondUntilTheProcessHasGone) {
  control.setManners(kPID, {.politeRequests = 250});
  EXPECT_TRUE(quit(4.0F));
  EXPECT_EQ(log.lines(), Lines{"quit Product: terminated after 0.250s (250 attempts)"});
}

TEST_F(QuitSchedule, ARequestThatFindsNobodyMeansThatTheProcessHasStopped) {
  control.setManners(kPID, {.politeDelivered = false});
  EXPECT_TRUE(quit(4.0F));
  EXPECT_EQ(log.lines(), Lines{"quit Product: process stopped after 0.000s (1 attempts)"});
  EXPECT_TRUE(clock.sleeps().empty());
}

TEST_F(QuitSchedule, AProcessThatEndsBetweenTwoRequestsIsFoundTerminated) {
  control.setManners(kPID, {.politeRequests = kNeverEnds});
  clock.onSleep = [&](double now) {
    if (now > 0.0095) table.endPID(kPID);
  };
  EXPECT_TRUE(quit(4.0F));
  EXPECT_EQ(log.lines(), Lines{"quit Product: terminated after 0.010s (10 attempts)"});
}

TEST_F(QuitSchedule, ForceIsUsedAfterTheTimeOfThePoliteRequests) {
  control.setManners(kPID, {.politeRequests = kNeverEnds, .forcedRequests = 3});
  EXPECT_TRUE(quit(0.0625F));
  EXPECT_EQ(log.lines(), Lines{"force-quit Product: terminated after 0.003s (3 attempts)"});
  EXPECT_EQ(control.politeRequests(kPID), 63);
  EXPECT_EQ(control.forcedRequests(kPID), 3);
}

TEST_F(QuitSchedule, AForcedRequestThatFindsNobodyIsLoggedInItsOwnSpelling) {
  control.setManners(kPID, {.politeRequests = kNeverEnds, .forcedDelivered = false});
  EXPECT_TRUE(quit(0.0625F));
  EXPECT_EQ(log.lines(), Lines{"foce-quit Product: process stopped after 0.000s (1 attempts)"});
}

TEST_F(QuitSchedule, AProcessThatWithstandsBothIsReportedAfterTwiceTheTime) {
  control.setManners(kPID, {.politeRequests = kNeverEnds, .forcedRequests = kNeverEnds});
  EXPECT_FALSE(quit(0.0625F));
  EXPECT_EQ(log.lines(), Lines{"quitting Product failed"});
  EXPECT_EQ(control.politeRequests(kPID), 63);
  EXPECT_EQ(control.forcedRequests(kPID), 63);
  EXPECT_NEAR(clock.monotonicSeconds(), 0.126, 1e-9);
}

TEST_F(QuitSchedule, WithoutTimeNoRequestIsMade) {
  EXPECT_FALSE(quit(0.0F));
  EXPECT_EQ(log.lines(), Lines{"quitting Product failed"});
  EXPECT_EQ(control.politeRequests(kPID), 0);
  EXPECT_EQ(control.forcedRequests(kPID), 0);
}

TEST_F(QuitSchedule, WithoutAProcessIDNothingCanBeDone) {
  EXPECT_FALSE(quit(4.0F, 0));
  EXPECT_EQ(log.lines(), Lines{"cannot quit Product: no pid"});
}

TEST_F(QuitSchedule, AnUnknownProcessIsNotFound) {
  EXPECT_FALSE(quit(4.0F, 43));
  EXPECT_EQ(log.lines(), Lines{"cannot quit Product: no process found"});
}

TEST_F(QuitSchedule, ASystemThatCannotEndApplicationsSaysSoFirst) {
  control.available = false;
  EXPECT_FALSE(quit(4.0F, 0));
  EXPECT_EQ(log.lines(), Lines{"cannot quit Product: NSRunningApplication not available"});
}

TEST_F(QuitSchedule, AMissingNameIsLoggedAsSuch) {
  EXPECT_FALSE(quitWithTimeout(0, std::nullopt, 4.0F));
  EXPECT_EQ(log.lines(), Lines{"cannot quit (null): no pid"});
}

}  // namespace
}  // namespace kr
