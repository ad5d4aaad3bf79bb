#include "library/utilities/MenuBarMonitor.h"

#include <gtest/gtest.h>

#include "platform/Services.h"
#include "platform/testing/InMemoryMenuBar.h"
#include "platform/testing/RecordingLog.h"

namespace kr {
namespace {

using platform::EventType;
using Lines = std::vector<std::string>;

class MenuBar : public ::testing::Test {
 protected:
  platform::Services set() {
    platform::Services set = platform::services();
    set.menuBar = &menuBar;
    set.log = &log;
    return set;
  }

  platform::testing::InMemoryMenuBar menuBar;
  platform::testing::RecordingLog log;
  platform::ScopedServices services{set()};
  MenuBarMonitor monitor;
};

TEST_F(MenuBar, IsTakenToBeShownUntilSomethingIsTold) {
  EXPECT_FALSE(monitor.menuBarIsHidden());
  monitor.install();
  EXPECT_FALSE(monitor.menuBarIsHidden());
}

TEST_F(MenuBar, IsAskedForBothOfItsEvents) {
  monitor.install();
  EXPECT_EQ(menuBar.wanted, (std::vector<EventType>{{0x6D656E75, 2000}, {0x6D656E75, 2001}}));
  EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(MenuBar, IsHiddenAndShownByItsEvents) {
  monitor.install();
  EXPECT_EQ(menuBar.handler({0x6D656E75, 2001}), -9874);
  EXPECT_TRUE(monitor.menuBarIsHidden());
  EXPECT_EQ(menuBar.handler({0x6D656E75, 2000}), -9874);
  EXPECT_FALSE(monitor.menuBarIsHidden());
}

TEST_F(MenuBar, IsNotChangedByOtherEventsWhichOthersGetAsWell) {
  EXPECT_EQ(monitor.handle({0x6170706C, 2001}), -9874);
  EXPECT_EQ(monitor.handle({0x6D656E75, 5}), -9874);
  EXPECT_FALSE(monitor.menuBarIsHidden());
  EXPECT_EQ(monitor.handle({0x6D656E75, 2001}), -9874);
  EXPECT_EQ(monitor.handle({0x6170706C, 2000}), -9874);
  EXPECT_TRUE(monitor.menuBarIsHidden());
}

TEST_F(MenuBar, IsWatchedOnce) {
  monitor.install();
  monitor.install();
  EXPECT_EQ(menuBar.installations, 1);
}

TEST_F(MenuBar, ThatCannotBeWatchedIsLoggedOnceAndNotTriedAgain) {
  menuBar.canInstall = false;
  monitor.install();
  monitor.install();
  EXPECT_EQ(menuBar.installations, 1);
  EXPECT_EQ(log.lines(), Lines{"could not install menu bar visibility event handl)"});
}

}  // namespace
}  // namespace kr
