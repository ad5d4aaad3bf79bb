// Waking the hardware with the silent sound of the test's bundle. How often it was played is seen in the log.
#include <algorithm>

#include "library/sound/LastSound.h"
#import "tests/library/sound/SoundFixture.h"
#include "tests/support/Eventually.h"

namespace kr {
namespace {

using testing::eventually;
using testing::Lines;
using testing::SoundFixture;

class Waking : public SoundFixture {
 protected:
  Waking() { setDefault(@"soundLog", [NSNumber numberWithBool:YES]); }

  [[nodiscard]] long played() const {
    const Lines lines = log.lines();
    return std::count_if(lines.begin(), lines.end(),
                         [](const std::string& line) { return line.starts_with("+SL: play self ("); });
  }

  // Nothing that is to be seen happens in this time.
  static bool staysSo(const std::function<bool()>& condition) {
    return !eventually([&] { return !condition(); }, 0.3);
  }
};

TEST_F(Waking, PlaysTheSilentSoundOnAThreadOfItsOwn) {
  [NSSound prepareForSound];
  EXPECT_TRUE(eventually([&] { return played() == 1; }));
  EXPECT_TRUE(staysSo([&] { return played() == 1; }));
}

TEST_F(Waking, TheSilentSoundIsKeptAndHardlyHeard) {
  [NSSound playSilentSoundThread];
  NSSound* silence = [NSSound soundNamed:@"SoundOfSilence"];
  ASSERT_NE(silence, nil);
  EXPECT_FLOAT_EQ([silence volume], 0.01F);
  EXPECT_GT([silence duration], 0.1);
  EXPECT_LT([silence duration], 1.0);
}

TEST_F(Waking, TwoCallsTenSecondsApartWakeItOnce) {
  [NSSound prepareForSound];
  ASSERT_TRUE(eventually([&] { return played() == 1; }));
  clock.sleep(10);
  [NSSound prepareForSound];
  EXPECT_TRUE(staysSo([&] { return played() == 1; }));
}

TEST_F(Waking, ACallAfterMoreThanTwentyFiveSecondsWakesItAgain) {
  [NSSound prepareForSound];
  ASSERT_TRUE(eventually([&] { return played() == 1; }));
  ASSERT_TRUE(staysSo([&] { return played() == 1; }));
  clock.sleep(25);
  [NSSound prepareForSound];
  EXPECT_TRUE(staysSo([&] { return played() == 1; }));
  clock.sleep(0.5);
  [NSSound prepareForSound];
  EXPECT_TRUE(eventually([&] { return played() == 2; }));
}

TEST_F(Waking, ASoundThatWasJustStartedHasWokenIt) {
  [NSSound setSoundDateNow];
  EXPECT_EQ(lastSoundTime(), clock.wallSeconds());
  [NSSound prepareForSound];
  EXPECT_TRUE(staysSo([&] { return played() == 0; }));
}

TEST_F(Waking, TheTimeIsNotedBeforeTheThreadHasDoneAnything) {
  @synchronized([NSSound class]) {
    [NSSound prepareForSound];
    EXPECT_EQ(lastSoundTime(), clock.wallSeconds());
    EXPECT_TRUE(staysSo([&] { return log.lines().empty(); })) << "it waits for the lock on the class";
  }
  EXPECT_TRUE(eventually([&] { return played() == 1; }));
}

}  // namespace
}  // namespace kr
