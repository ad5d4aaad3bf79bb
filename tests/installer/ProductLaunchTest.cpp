#include "installer/ProductLaunch.h"

#include <gtest/gtest.h>

#include "platform/Services.h"
#include "platform/testing/ManualClock.h"
#include "platform/testing/RecordingLog.h"

namespace kr {
namespace {

using Lines = std::vector<std::string>;

class ScriptedSteps final : public LaunchSteps {
 public:
  Guarded<std::int32_t> registration;
  std::vector<Guarded<bool>> icons{{true, {}}};
  std::vector<Guarded<bool>> opens{{true, {}}};  // the last one is answered from then on
  int iconsAsked = 0, opensAsked = 0, broughtForward = 0;

  Guarded<std::int32_t> registerProduct() override { return registration; }
  Guarded<bool> hasIcon() override { return at(icons, iconsAsked++); }
  Guarded<bool> open() override { return at(opens, opensAsked++); }
  void bringInstallerForward() override { ++broughtForward; }

 private:
  static Guarded<bool> at(const std::vector<Guarded<bool>>& answers, int index) {
    return answers[std::min(answers.size() - 1, static_cast<std::size_t>(index))];
  }
};

class ProductLaunch : public ::testing::Test {
 protected:
  ProductLaunch() : services_(platform::services()) {
    services_.clock = &clock_;
    services_.log = &log_;
    scope_.emplace(services_);
  }

  void launch() { launchProduct("/opt/P.app", steps_); }

  ScriptedSteps steps_;
  platform::testing::ManualClock clock_;
  platform::testing::RecordingLog log_;

 private:
  platform::Services services_;
  std::optional<platform::ScopedServices> scope_;
};

TEST_F(ProductLaunch, AProductThatOpensAtOnceIsNotOpenedAgain) {
  launch();
  EXPECT_EQ(log_.lines(), (Lines{"launching /opt/P.app", "waited 0.5", "registered app: 0", "waited 0.3",
                                 "launched immediately: 1"}));
  EXPECT_EQ(clock_.sleeps(), (std::vector<double>{0.5, 0.3}));
  EXPECT_EQ(steps_.broughtForward, 1);
}

TEST_F(ProductLaunch, AProductThatNeverOpensIsTriedElevenTimes) {
  steps_.opens = {{false, {}}};
  launch();
  Lines expected{"launching /opt/P.app", "waited 0.5", "registered app: 0", "waited 0.3",
                 "launched immediately: 0"};
  for (int count = 1; count <= 10; ++count) {
    expected.push_back("retry opening (count=" + std::to_string(count) + ")");
    expected.push_back("launched: 0");
  }
  EXPECT_EQ(log_.lines(), expected);
  EXPECT_EQ(steps_.opensAsked, 11);
  EXPECT_EQ(clock_.sleeps(),
            (std::vector<double>{0.5, 0.3, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5}));
  EXPECT_EQ(steps_.broughtForward, 1);
}

TEST_F(ProductLaunch, ARetryThatSucceedsEndsTheLoop) {
  steps_.opens = {{false, {}}, {false, {}}, {true, {}}};
  launch();
  const Lines lines = log_.lines();
  EXPECT_EQ(Lines(lines.end() - 4, lines.end()),
            (Lines{"retry opening (count=1)", "launched: 0", "retry opening (count=2)", "launched: 1"}));
}

TEST_F(ProductLaunch, AStatusOfTheRegistrationIsLoggedAndNothingElse) {
  steps_.registration.value = -10811;
  launch();
  EXPECT_EQ(log_.lines()[2], "registered app: -10811");
  EXPECT_EQ(log_.lines().back(), "launched immediately: 1");
}

TEST_F(ProductLaunch, AnIconThatComesOnTheSecondLookIsNoted) {
  steps_.icons = {{false, {}}, {true, {}}};
  launch();
  EXPECT_EQ(log_.lines()[4], "did not get icon");
  EXPECT_EQ(log_.lines()[5], "retry; succeeded");
  EXPECT_EQ(clock_.sleeps(), (std::vector<double>{0.5, 0.3, 1.0}));
}

TEST_F(ProductLaunch, AnIconIsLookedForTwiceAtMost) {
  steps_.icons = {{false, {}}};
  launch();
  EXPECT_EQ(log_.lines()[5], "retry; failed");
  EXPECT_EQ(steps_.iconsAsked, 2);
  EXPECT_EQ(log_.lines().back(), "launched immediately: 1");
}

TEST_F(ProductLaunch, EveryStepSurvivesAnExceptionOfTheOneBefore) {
  steps_.registration.exception = "r";
  steps_.icons = {{false, "i"}};
  steps_.opens = {{false, "o"}, {true, {}}};
  launch();
  EXPECT_EQ(log_.lines(), (Lines{"launching /opt/P.app", "waited 0.5", "EXCEPTION @ LSRegisterURL: r",
                                 "waited 0.3", "EXCEPTION @ iconForFile: i", "EXCEPTION @ openFile: o",
                                 "retry opening (count=1)", "launched: 1"}));
}

TEST_F(ProductLaunch, AnExceptionOnTheSecondLookForTheIconIsLoggedInPlaceOfItsOutcome) {
  steps_.icons = {{false, {}}, {false, "i"}};
  launch();
  EXPECT_EQ(log_.lines()[4], "did not get icon");
  EXPECT_EQ(log_.lines()[5], "EXCEPTION @ iconForFile: i");
}

TEST_F(ProductLaunch, AnExceptionEndsTheRetries) {
  steps_.opens = {{false, {}}, {false, {}}, {false, "o"}};
  launch();
  EXPECT_EQ(log_.lines().back(), "EXCEPTION @ retry loop (count=2): o");
  EXPECT_EQ(steps_.opensAsked, 3);
  EXPECT_EQ(steps_.broughtForward, 1);
}

}  // namespace
}  // namespace kr
