// How the user has set the desktop to look. Any thread.
#pragma once

namespace kr::platform {

class DesktopAppearance {
 public:
  virtual ~DesktopAppearance() = default;

  // Whether the user has chosen the dark style; false when nothing is chosen. The answer follows the desktop
  // while the main run loop runs: where the desktop itself tells of changes, it is the last word that has
  // come. Until the first call on the main thread, which asks the desktop, other threads hear of the user
  // defaults only.
  [[nodiscard]] virtual bool isDark() = 0;
};

}  // namespace kr::platform
