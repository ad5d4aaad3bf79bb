#include <gtest/gtest.h>
#include <signal.h>

#include "platform/SystemServices.h"
#include "platform/WindowOrder.h"
#include "platform/linux/ProcFS.h"
#include "platform/linux/X11Desktop.h"
#include "tests/support/Desktop.h"
#include "tests/support/Eventually.h"
#include "tests/support/TestApplication.h"
#include "tests/support/WindowView.h"

namespace kr::platform {
namespace {

using kr::testing::Desktop;
using kr::testing::eventually;
using kr::testing::ScratchFolder;
using kr::testing::TestApplication;
using kr::testing::WindowView;

// Two applications: the windows A and B belong to the one, C and D to the other. Opened in this order, D is
// in front.
class X11WindowOrder : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(eventually([&] { return view.stacking() == "ABCD" && view.active() == "D"; }));
    // The test before may have left the service with a server of the same name that was gone.
    ASSERT_TRUE(eventually([&] { return order.front().has_value(); }));
  }

  static SerialNumber serial(const TestApplication& application) {
    return procfs::serialNumber(application.pid()).value();
  }

  // Opens the application's windows one after the other, so that their order is known.
  TestApplication open(const std::string& name, const std::string& first, const std::string& second,
                       const std::string& expected) {
    TestApplication application(folder, name, {}, {"window", first, "window", second});
    EXPECT_TRUE(eventually([&] { return view.stacking() == expected; })) << view.stacking();
    return application;
  }

  Desktop desktop{{.windowManager = true}};
  ScratchFolder folder;
  WindowView view;
  TestApplication one = open("One.app", "A", "B", "AB");
  TestApplication two = open("Two.app", "C", "D", "ABCD");
  WindowOrder& order = systemWindowOrder();
};

TEST_F(X11WindowOrder, TheOwnerOfTheActiveWindowIsInFront) {
  EXPECT_EQ(order.front(), serial(two));
  EXPECT_EQ(X11Desktop::shared().windowOwners(), (std::set<pid_t>{one.pid(), two.pid()}));
}

TEST_F(X11WindowOrder, AllWindowsOfAnApplicationComeForwardInTheirOrder) {
  order.setFront(serial(one), false);
  EXPECT_TRUE(eventually([&] { return view.stacking() == "CDAB"; })) << view.stacking();
  EXPECT_TRUE(eventually([&] { return view.active() == "B"; })) << view.active();
  EXPECT_EQ(order.front(), serial(one));
}

TEST_F(X11WindowOrder, OrItsFrontWindowOnly) {
  order.setFront(serial(one), true);
  EXPECT_TRUE(eventually([&] { return view.stacking() == "ACDB"; })) << view.stacking();
  EXPECT_TRUE(eventually([&] { return view.active() == "B"; })) << view.active();
}

TEST_F(X11WindowOrder, AWindowThatTheUserPutAwayStaysAway) {
  view.iconify("B");
  ASSERT_TRUE(eventually([&] { return view.iconified() == "B"; }));
  order.setFront(serial(one), false);
  EXPECT_TRUE(eventually([&] { return view.active() == "A"; })) << view.active();
  EXPECT_EQ(view.iconified(), "B");
}

TEST_F(X11WindowOrder, HidingPutsAllWindowsAwayAndShowingBringsThemBack) {
  order.setVisible(serial(two), false);
  EXPECT_TRUE(eventually([&] { return view.iconified() == "CD"; })) << view.iconified();
  EXPECT_TRUE(eventually([&] { return order.front() != serial(two); }));
  order.setVisible(serial(two), true);
  EXPECT_TRUE(eventually([&] { return view.iconified().empty(); })) << view.iconified();
}

TEST_F(X11WindowOrder, ShowingLeavesAwayWhatTheUserPutAwayBefore) {
  view.iconify("C");
  ASSERT_TRUE(eventually([&] { return view.iconified() == "C"; }));
  order.setVisible(serial(two), false);
  ASSERT_TRUE(eventually([&] { return view.iconified() == "CD"; }));
  order.setVisible(serial(two), true);
  EXPECT_TRUE(eventually([&] { return view.iconified() == "C"; })) << view.iconified();
}

TEST_F(X11WindowOrder, AHiddenApplicationThatComesToTheFrontIsShown) {
  order.setVisible(serial(one), false);
  ASSERT_TRUE(eventually([&] { return view.iconified() == "AB"; }));
  order.setFront(serial(one), false);
  EXPECT_TRUE(eventually([&] { return view.iconified().empty(); })) << view.iconified();
  EXPECT_TRUE(eventually([&] { return order.front() == serial(one); }));
}

TEST_F(X11WindowOrder, NoOtherProcessWithTheSameIDIsMeant) {
  SerialNumber other = serial(one);
  other.high += 1;
  order.setFront(other, false);
  order.setVisible(other, false);
  EXPECT_FALSE(eventually([&] { return view.stacking() != "ABCD" || !view.iconified().empty(); }, 0.3));
}

TEST_F(X11WindowOrder, WithoutItsServerThereIsNoInformationAndRequestsDoNothing) {
  const SerialNumber process = serial(one);
  desktop.stopDisplay();
  EXPECT_TRUE(eventually([&] { return !order.front(); }));
  order.setFront(process, false);
  order.setVisible(process, false);
  EXPECT_TRUE(X11Desktop::shared().windowOwners().empty());
}

TEST_F(X11WindowOrder, AnotherDisplayIsUsedAtOnce) {
  {
    const Desktop other({.windowManager = true});
    EXPECT_FALSE(order.front());
    TestApplication third(folder, "Three.app", {}, {"window", "X"});
    EXPECT_TRUE(eventually([&] { return order.front() == serial(third); }));
  }
  EXPECT_EQ(order.front(), serial(two));
}

TEST(WindowOrder, WithoutADisplayNothingIsInFront) {
  const Desktop none({.display = false});
  const ScratchFolder folder;
  TestApplication application(folder, "A.app");
  EXPECT_FALSE(systemWindowOrder().front());
  systemWindowOrder().setFront(procfs::serialNumber(application.pid()).value(), false);
}

TEST(WindowOrder, AServerWithoutAWindowManagerHasNoWindows) {
  const Desktop desktop;
  const ScratchFolder folder;
  TestApplication application(folder, "A.app", {}, {"window", "A"});
  EXPECT_FALSE(systemWindowOrder().front());
  EXPECT_TRUE(X11Desktop::shared().windowOwners().empty());
}

TEST(WindowOrder, WakingMakesAStoppedProcessRunAgain) {
  const ScratchFolder folder;
  TestApplication application(folder, "A.app");
  const auto state = [&] { return procfs::status(application.pid())->state; };
  application.child().signal(SIGSTOP);
  ASSERT_TRUE(eventually([&] { return state() == 'T'; }));
  SerialNumber process = procfs::serialNumber(application.pid()).value();
  systemWindowOrder().wake({process.high + 1, process.low});
  EXPECT_FALSE(eventually([&] { return state() != 'T'; }, 0.1));
  systemWindowOrder().wake(process);
  EXPECT_TRUE(eventually([&] { return state() == 'S'; }));
}

}  // namespace
}  // namespace kr::platform
