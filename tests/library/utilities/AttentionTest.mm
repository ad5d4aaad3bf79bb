#import "library/utilities/KRUtilities.h"

#include <ctime>

#import "tests/library/utilities/UtilitiesFixture.h"

namespace kr::testing {
namespace {

constexpr double kMojave = 1639;

class Attention : public UtilitiesFixture {
 protected:
  // The clock stands at 40 seconds past this minute of the day in the time zone of the program.
  static int minuteOfDay() {
    const std::time_t seconds = 1'000'000'000;
    std::tm local{};
    ::localtime_r(&seconds, &local);
    return local.tm_hour * 60 + local.tm_min;
  }
};

TEST_F(Attention, IdleTimeIsInSeconds) {
  EXPECT_EQ([KRUtilities idleTime], -1.0F) << "unknown";
  userInput_.idle = std::chrono::milliseconds(1500);
  EXPECT_EQ([KRUtilities idleTime], 1.5F);
  userInput_.idle = std::chrono::nanoseconds(0);
  EXPECT_EQ([KRUtilities idleTime], 0.0F);
  userInput_.idle = std::chrono::hours(24 * 365);
  EXPECT_EQ([KRUtilities idleTime], 31536000.0F);
  userInput_.idle = std::chrono::nanoseconds(16777217'000000000);
  EXPECT_EQ([KRUtilities idleTime], 16777216.0F) << "in single precision";
}

TEST_F(Attention, NobodyDisturbsWhoeverDoesNotWantToBe) {
  EXPECT_FALSE([KRUtilities doNotDisturbMode]);
  doNotDisturb_.on = true;
  EXPECT_TRUE([KRUtilities doNotDisturbMode]);
  doNotDisturb_.period = {.start = 600, .end = 660};
  EXPECT_TRUE([KRUtilities doNotDisturbMode]) << "the period does not end the wish";
}

TEST_F(Attention, TheDailyPeriodIsOfTheLocalTime) {
  const int now = minuteOfDay();
  doNotDisturb_.period = {.start = now, .end = now + 1};
  EXPECT_TRUE([KRUtilities doNotDisturbMode]);
  clock_.sleep(19);
  EXPECT_TRUE([KRUtilities doNotDisturbMode]) << "the minute's last second";
  clock_.sleep(1);
  EXPECT_FALSE([KRUtilities doNotDisturbMode]) << "the next minute";
  doNotDisturb_.period = {.start = now + 2, .end = now + 1};
  EXPECT_FALSE([KRUtilities doNotDisturbMode]) << "all day but for this minute";
}

TEST_F(Attention, EverybodyMayBeDisturbedBeforeMojave) {
  doNotDisturb_.on = true;
  doNotDisturb_.period = {.start = 0, .end = 1439};
  system_.appKit = kMojave - 0.5;
  EXPECT_FALSE([KRUtilities doNotDisturbMode]);
  system_.appKit = kMojave;
  EXPECT_TRUE([KRUtilities doNotDisturbMode]);
}

TEST_F(Attention, NoDisplayIsZoomed) {
  EXPECT_FALSE([KRUtilities displayIsZoomed]);
}

}  // namespace
}  // namespace kr::testing
