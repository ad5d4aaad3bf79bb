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

  struct News {
    bool windows = false;  // a window has come or gone
    bool active = false;   // another window is active
    bool lost = false;     // nothing will be told any more
  };

  // What was told since the last call.
  [[nodiscard]] News take();

 private:
  X11RootWatch(std::unique_ptr<X11Session> session, std::string display);

  std::unique_ptr<X11Session> session_;
  std::string display_;
};

}  // namespace kr::platform
