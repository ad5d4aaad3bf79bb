#include "platform/UserInput.h"

#include <gtest/gtest.h>
#include <signal.h>

#include "platform/SystemServices.h"
#include "tests/support/Desktop.h"
#include "tests/support/Eventually.h"

namespace kr::platform {
namespace {

using kr::testing::Child;
using kr::testing::Desktop;
using kr::testing::eventually;
using std::chrono::milliseconds;

// The server of a test that came before may have had the same name; it is missed soon.
bool isKnown() {
  return eventually([] { return systemUserInput().idleTime().has_value(); });
}

TEST(UserInput, IdleTimeGrowsUntilTheUserTouchesSomething) {
  const Desktop desktop;
  ASSERT_TRUE(isKnown());
  ASSERT_TRUE(eventually([] { return systemUserInput().idleTime() > milliseconds(300); }));
  for (const std::vector<std::string>& touch :
       {std::vector<std::string>{"xdotool", "key", "a"}, {"xdotool", "mousemove", "10", "10"}}) {
    const auto before = systemUserInput().idleTime();
    ASSERT_TRUE(before.has_value());
    Child(touch).wait(10);
    EXPECT_TRUE(eventually([&] { return systemUserInput().idleTime() < *before; })) << touch[1];
    ASSERT_TRUE(eventually([] { return systemUserInput().idleTime() > milliseconds(300); }));
  }
}

TEST(UserInput, IdleTimeIsUnknownWithoutAServer) {
  const Desktop desktop({.display = false});
  EXPECT_EQ(systemUserInput().idleTime(), std::nullopt);
}

TEST(UserInput, IdleTimeIsUnknownWhileTheServerDoesNotAnswerAndKnownAgainLater) {
  Desktop desktop;
  ASSERT_TRUE(isKnown());
  desktop.signalDisplay(SIGSTOP);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(systemUserInput().idleTime(), std::nullopt);
  desktop.signalDisplay(SIGCONT);
  EXPECT_TRUE(isKnown());
}

TEST(UserInput, IdleTimeIsUnknownWhenTheServerHasGone) {
  Desktop desktop;
  ASSERT_TRUE(isKnown());
  desktop.stopDisplay();
  EXPECT_EQ(systemUserInput().idleTime(), std::nullopt);
}

}  // namespace
}  // namespace kr::platform
