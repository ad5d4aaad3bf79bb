#include "platform/linux/DesktopWatch.h"

#include <gtest/gtest.h>
#include <xcb/xcb_ewmh.h>

#include "tests/support/Desktop.h"
#import "tests/support/RunLoop.h"

namespace kr::platform {
namespace {

// The test stands for the window manager: it writes down which window is active.
void makeActive(X11Session& session, xcb_window_t window) {
  ::xcb_ewmh_set_active_window(session.ewmh(), session.screen(), window);
  const X11Reply<xcb_get_input_focus_reply_t> done(::xcb_get_input_focus_reply(
      session.connection(), ::xcb_get_input_focus(session.connection()), nullptr));
  ASSERT_NE(done, nullptr);
}

// What the server told while it was asked something else has left the descriptor by the time the run loop
// looks at it.
TEST(DesktopWatch, TellsWhatAReplyHasBroughtAlong) {
  const kr::testing::Desktop desktop;
  const auto manager = X11Session::open();
  ASSERT_NE(manager, nullptr);
  bool isTold = false;
  DesktopWatch::shared().listen([&](const X11RootWatch::News& news) { isTold = isTold || news.active; });
  kr::testing::runLoop(0.1);
  isTold = false;
  makeActive(*manager, manager->root());
  DesktopWatch::shared().listenToActiveWindow([](const X11RootWatch::News&) {});
  EXPECT_TRUE(kr::testing::eventuallyInRunLoop([&] { return isTold; }));
}

}  // namespace
}  // namespace kr::platform
