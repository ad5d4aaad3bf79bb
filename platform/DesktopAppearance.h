// How the user has set the desktop to look. Any thread.
#pragma once

namespace kr::platform {

class DesktopAppearance {
 public:
  virtual ~DesktopAppearance() = default;

  // Whether the user has chosen the dark style; false when nothing is chosen. Asked anew each time, so the
  // answer follows the desktop while the program runs.
  [[nodiscard]] virtual bool isDark() = 0;
};

}  // namespace kr::platform
