// Whether the menu bar is hidden, as the events of the system tell it. Main thread.
#pragma once

#include <cstdint>

#include "platform/MenuBar.h"

namespace kr {

class MenuBarMonitor {
 public:
  // Of this process.
  [[nodiscard]] static MenuBarMonitor& shared();

  // Asks for the events, once: what cannot be had is logged and not asked for again.
  void install();

  // Takes an event of any kind, and leaves it to other handlers as well.
  std::int32_t handle(platform::EventType event);

  // False until an event has told otherwise.
  [[nodiscard]] bool menuBarIsHidden() const { return menuBarIsShown_ != 0; }

 private:
  bool isInstalled_ = false;
  std::uint8_t menuBarIsShown_ = 0;  // 1 while the menu bar is hidden, in spite of the name
};

}  // namespace kr
