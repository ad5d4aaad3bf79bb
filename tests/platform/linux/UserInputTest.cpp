#include "platform/UserInput.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "platform/SystemServices.h"
#include "platform/linux/X11Desktop.h"
#include "tests/support/Desktop.h"
#include "tests/support/Eventually.h"
#include "tests/support/StoppedDisplay.h"

namespace kr::platform {
namespace {

using kr::testing::Child;
using kr::testing::Desktop;
using kr::testing::eventually;
using kr::testing::StoppedDisplay;
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
    const auto status = Child(touch).wait(10);
    ASSERT_TRUE(status && *status == 0) << touch[1];
    const auto isLess = [&] {
      const auto now = systemUserInput().idleTime();
      return now.has_value() && *now < *before;
    };
    EXPECT_TRUE(eventually(isLess)) << touch[1];
    ASSERT_TRUE(eventually([] { return systemUserInput().idleTime() > milliseconds(300); }));
  }
}

TEST(UserInput, IdleTimeIsUnknownWithoutAServer) {
  const Desktop desktop({.display = false});
  EXPECT_EQ(systemUserInput().idleTime(), std::nullopt);
}

void expectUnknown(StoppedDisplay& server) {
  for (int i = 0; i < 3; ++i) EXPECT_EQ(systemUserInput().idleTime(), std::nullopt);
  EXPECT_FALSE(server.hadToGoOn());
}

TEST(UserInput, IdleTimeIsUnknownWhileTheServerDoesNotAnswerAndKnownAgainLater) {
  const Desktop desktop;
  ASSERT_TRUE(isKnown());
  {
    StoppedDisplay server(desktop);
    expectUnknown(server);
  }
  EXPECT_TRUE(isKnown());
}

TEST(UserInput, IdleTimeIsUnknownWhereTheServerHasNeverAnsweredAndKnownLater) {
  const Desktop desktop;
  {
    StoppedDisplay server(desktop);
    expectUnknown(server);
  }
  EXPECT_TRUE(isKnown());
}

TEST(UserInput, IdleTimeDoesNotWaitForAnotherQuestionThatTheServerDoesNotAnswer) {
  const Desktop desktop;
  ASSERT_TRUE(isKnown());
  std::thread other;
  {
    StoppedDisplay server(desktop);
    std::atomic<bool> isAsked = false;
    other = std::thread([&isAsked] {
      isAsked = true;
      static_cast<void>(X11Desktop::shared().windowOwners());
    });
    while (!isAsked) std::this_thread::yield();
    std::this_thread::sleep_for(milliseconds(100));
    expectUnknown(server);
  }
  other.join();
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
