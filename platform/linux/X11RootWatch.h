// Tells when the window manager changes its lists of windows, over a connection of its own: replies to
// questions would otherwise bring such news unseen. One thread.
#pragma once

#include <memory>
#include <string>

#include "platform/linux/X11Connection.h"

namespace kr::platform {

class X11RootWatch {
 public:
  // Null where there is no server at DISPLAY.
  [[nodiscard]] static std::unique_ptr<X11RootWatch> open();

  // Can be read when the server has something to tell, and when it is gone.
  [[nodiscard]] int descriptor() const;

  // The DISPLAY that the server was found under.
  [[nodiscard]] const std::string& display() const { return display_; }

  // From now on the state of the window that is active at the time is watched as well.
  void followActiveWindow();

  struct News {
    bool windows = false;      // a window has come or gone
    bool active = false;       // another window is active
    bool activeState = false;  // the state of the active window has changed; where that is followed
    bool lost = false;         // nothing will be told any more
  };

  // What was told since the last call.
  [[nodiscard]] News take();

 private:
  X11RootWatch(std::unique_ptr<X11Session> session, std::string display);

  void readEvents(News& news);
  void follow(xcb_window_t window);

  std::unique_ptr<X11Session> session_;
  std::string display_;
  bool followsActiveWindow_ = false;
  xcb_window_t followed_ = XCB_NONE;
};

}  // namespace kr::platform
