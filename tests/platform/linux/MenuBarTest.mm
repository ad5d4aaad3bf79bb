#include "platform/MenuBar.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <vector>

#include "platform/SystemServices.h"
#include "platform/WindowOrder.h"
#include "tests/support/Desktop.h"
#include "tests/support/Eventually.h"
#import "tests/support/RunLoop.h"
#include "tests/support/TestApplication.h"
#include "tests/support/WindowView.h"

namespace kr::platform {
namespace {

using kr::testing::Desktop;
using kr::testing::eventually;
using kr::testing::eventuallyInRunLoop;
using kr::testing::runLoop;
using kr::testing::ScratchFolder;
using kr::testing::TestApplication;
using kr::testing::WindowView;

constexpr std::array<EventType, 2> kBoth{kMenuBarShown, kMenuBarHidden};

class FullScreen : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(eventually([&] { return view->active() == "B"; }));
  }

  void watch(std::span<const EventType> events = kBoth) {
    ASSERT_TRUE(systemMenuBar().installHandler(
        [this](EventType event) {
          told.push_back(event);
          return kEventNotHandled;
        },
        events));
  }

  bool isTold(const std::vector<EventType>& expected) {
    return eventuallyInRunLoop([&] { return told == expected; });
  }

  static void activate(const std::string& title) {
    testing::Child tool({"xdotool", "search", "--name", "^" + title + "$", "windowactivate"});
    const auto status = tool.wait(10.0);
    ASSERT_TRUE(status && *status == 0) << title;
  }

  std::optional<Desktop> desktop{std::in_place, testing::DesktopParts{.windowManager = true}};
  ScratchFolder folder;
  std::optional<WindowView> view{std::in_place};
  std::optional<TestApplication> application{std::in_place, folder, "One.app", testing::BundleInformation{},
                                             std::vector<std::string>{"window", "A", "window", "B"}};
  std::vector<EventType> told;
};

TEST_F(FullScreen, OfTheActiveWindowHidesTheMenuBarUntilItEnds) {
  watch();
  runLoop(0.2);
  EXPECT_TRUE(told.empty());
  view->fillScreen("B", true);
  EXPECT_TRUE(isTold({kMenuBarHidden}));
  view->fillScreen("B", false);
  EXPECT_TRUE(isTold({kMenuBarHidden, kMenuBarShown}));
}

TEST_F(FullScreen, ThatIsThereAlreadyIsToldOutOfTheRunLoop) {
  view->fillScreen("B", true);
  runLoop(0.3);
  watch();
  EXPECT_TRUE(told.empty());
  EXPECT_TRUE(isTold({kMenuBarHidden}));
}

TEST_F(FullScreen, OfAnotherWindowThanTheActiveOneDoesNotCount) {
  watch();
  view->fillScreen("B", true);
  ASSERT_TRUE(isTold({kMenuBarHidden}));
  activate("A");
  EXPECT_TRUE(isTold({kMenuBarHidden, kMenuBarShown}));
  activate("B");
  EXPECT_TRUE(isTold({kMenuBarHidden, kMenuBarShown, kMenuBarHidden}));
}

TEST_F(FullScreen, EndsWithTheApplication) {
  watch();
  view->fillScreen("B", true);
  ASSERT_TRUE(isTold({kMenuBarHidden}));
  application.reset();
  EXPECT_TRUE(isTold({kMenuBarHidden, kMenuBarShown}));
}

TEST_F(FullScreen, OfAWindowThatWasNotThereAtFirstIsTold) {
  watch();
  runLoop(0.1);
  TestApplication other(folder, "Two.app", {}, {"window", "C"});
  ASSERT_TRUE(eventually([&] { return view->active() == "C"; }));
  view->fillScreen("C", true);
  EXPECT_TRUE(isTold({kMenuBarHidden}));
}

TEST_F(FullScreen, TellsOnlyWhatIsWanted) {
  watch(std::span(kBoth).first(1));
  view->fillScreen("B", true);
  runLoop(0.3);
  EXPECT_TRUE(told.empty());
  view->fillScreen("B", false);
  EXPECT_TRUE(isTold({kMenuBarShown}));
}

TEST_F(FullScreen, EndsWithTheServerAndIsToldOfTheNextOne) {
  watch();
  view->fillScreen("B", true);
  ASSERT_TRUE(isTold({kMenuBarHidden}));
  view.reset();
  application.reset();
  desktop.reset();
  ASSERT_TRUE(isTold({kMenuBarHidden, kMenuBarShown}));
  told.clear();
  Desktop another({.windowManager = true});
  TestApplication other(folder, "Two.app", {}, {"window", "C"});
  WindowView newView;
  ASSERT_TRUE(eventually([&] { return newView.active() == "C"; }));
  newView.fillScreen("C", true);
  // Whoever asks for windows finds the server, at most a second after it was missed.
  const auto isHidden = [&] {
    static_cast<void>(systemWindowOrder().front());
    return told == std::vector<EventType>{kMenuBarHidden};
  };
  EXPECT_TRUE(eventuallyInRunLoop(isHidden));
}

}  // namespace
}  // namespace kr::platform
