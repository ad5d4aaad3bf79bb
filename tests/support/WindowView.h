// What a test sees of the windows of the desktop, over a connection of its own, and a window of the test's
// own process. Windows are told by their titles, of one letter each.
//
//   EXPECT_TRUE(eventually([&] { return view.stacking() == "ABCD"; }));
#pragma once

#include <xcb/xcb.h>

#include <memory>
#include <string>

#include "platform/linux/X11Connection.h"

namespace kr::testing {

class WindowView {
 public:
  // Titles from the lowest window to the front one.
  [[nodiscard]] std::string stacking();

  // Titles of the iconified windows, sorted.
  [[nodiscard]] std::string iconified();

  [[nodiscard]] std::string active();

  // Lets the window fill the screen, or takes that back, as the application's own command does.
  void fillScreen(const std::string& wanted, bool fills);

  // What the user does with the button in the title bar.
  void iconify(const std::string& wanted);

 private:
  [[nodiscard]] std::string title(xcb_window_t window);

  std::unique_ptr<platform::X11Session> session_ = platform::X11Session::open();
};

// Open until the end of the scope.
class OwnWindow {
 public:
  // Throws std::runtime_error without a server.
  explicit OwnWindow(const std::string& title);
  ~OwnWindow();
  OwnWindow(const OwnWindow&) = delete;
  OwnWindow& operator=(const OwnWindow&) = delete;

 private:
  xcb_connection_t* connection_;
};

}  // namespace kr::testing
