// Counts how often a program takes the selection CLIPBOARD, which is what putting something on the clipboard
// is. The server keeps the news until it is asked for. One thread.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/linux/X11Connection.h"

namespace kr::platform {

class X11SelectionWatch {
 public:
  // Null where there is no server at DISPLAY, or one that does not tell.
  [[nodiscard]] static std::unique_ptr<X11SelectionWatch> open();

  // The DISPLAY that the server was found under.
  [[nodiscard]] const std::string& display() const { return display_; }

  // How often until now, since the last call; none when the server is lost. What a server that does not
  // answer has still to tell counts later.
  [[nodiscard]] std::optional<long> takeChanges();

 private:
  X11SelectionWatch(std::unique_ptr<X11Session> session, std::string display, std::uint8_t event)
      : session_(std::move(session)), display_(std::move(display)), event_(event) {}

  std::unique_ptr<X11Session> session_;
  std::string display_;
  std::uint8_t event_;
};

}  // namespace kr::platform
