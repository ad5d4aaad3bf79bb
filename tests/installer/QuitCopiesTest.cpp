#include "installer/QuitCopies.h"

#include <gtest/gtest.h>

#include "platform/Services.h"
#include "platform/testing/ManualClock.h"
#include "platform/testing/RecordingLog.h"

namespace kr {
namespace {

using Lines = std::vector<std::string>;

// A copy that runs until it has been asked a number of times.
class QuitCopies : public ::testing::Test {
 protected:
  QuitCopies() : services_(platform::services()) {
    services_.clock = &clock_;
    services_.log = &log_;
    scope_.emplace(services_);
  }

  std::optional<std::string> runWithCopyThatQuitsAfter(int requests) {
    return quitRunningCopies({.askToQuit = [this] { ++asked_; },
                              .stillRunning = [this, requests]() -> std::optional<std::string> {
                                ++checked_;
                                if (asked_ >= requests) return std::nullopt;
                                return "Notes";
                              }});
  }

  int asked_ = 0, checked_ = 0;
  platform::testing::ManualClock clock_;
  platform::testing::RecordingLog log_;

 private:
  platform::Services services_;
  std::optional<platform::ScopedServices> scope_;
};

TEST_F(QuitCopies, ACopyThatQuitsAtOnceNeedsNoFurtherRound) {
  EXPECT_EQ(runWithCopyThatQuitsAfter(1), std::nullopt);
  EXPECT_EQ(asked_, 1);
  EXPECT_TRUE(clock_.sleeps().empty());
  EXPECT_TRUE(log_.lines().empty());
}

TEST_F(QuitCopies, ACopyThatQuitsAfterTheSecondRequestIsWaitedFor) {
  EXPECT_EQ(runWithCopyThatQuitsAfter(2), std::nullopt);
  EXPECT_EQ(asked_, 2);
  EXPECT_EQ(clock_.sleeps(), std::vector<double>{1.0});
  EXPECT_EQ(log_.lines(), Lines{"Notes did not quit; will retry"});
}

TEST_F(QuitCopies, ACopyThatRefusesIsAskedFourTimesAndNamed) {
  EXPECT_EQ(runWithCopyThatQuitsAfter(100), "Notes");
  EXPECT_EQ(asked_, 4);
  EXPECT_EQ(checked_, 5);
  EXPECT_EQ(clock_.sleeps(), (std::vector<double>{1.0, 1.0, 1.0}));
  EXPECT_EQ(log_.lines(),
            (Lines{"Notes did not quit; will retry", "Notes refused to quit; installation cancelled"}));
}

TEST_F(QuitCopies, ACopyThatQuitsAtTheLastRequestDoesNotCancelTheInstallation) {
  EXPECT_EQ(runWithCopyThatQuitsAfter(4), std::nullopt);
  EXPECT_EQ(log_.lines(), Lines{"Notes did not quit; will retry"});
}

}  // namespace
}  // namespace kr
