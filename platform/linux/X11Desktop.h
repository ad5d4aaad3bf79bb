// The windows of the desktop and the processes that own them, through the window manager's published lists
// and requests. Without an X server or a window manager there are no windows, and requests do nothing. Any
// thread.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <vector>

#include "platform/linux/X11Connection.h"

namespace kr::platform {

class X11Desktop {
 public:
  // The one that all services of the program share.
  [[nodiscard]] static X11Desktop& shared();

  // Called, on any thread, whenever a server was found that was not there before. It must not ask the desktop
  // anything.
  void setOpenedHandler(std::function<void()> handler);

  // The processes that own a window which the window manager lists.
  [[nodiscard]] std::set<pid_t> windowOwners();

  // The owner of the active window.
  [[nodiscard]] std::optional<pid_t> activeProcess();

  // Whether the active window fills the whole screen, the panels of the desktop included.
  [[nodiscard]] bool activeWindowFillsScreen();

  // Raises all windows of the process, or its front window only, and gives the front one the focus. Windows
  // that are all hidden are shown first.
  void bringToFront(pid_t process, bool frontWindowOnly);

  // Iconifies the windows of the process.
  void hide(pid_t process);

  // Shows the windows that hide() has iconified, or all of them where it has none.
  void show(pid_t process);

  // How long the user has touched neither keyboard nor mouse. A server that has stopped answering is not
  // waited for, but for a second when it is asked for the first time; nor is another thread that waits for
  // it.
  [[nodiscard]] std::optional<std::chrono::milliseconds> idleTime();

 private:
  // Windows of the process that can be worked in, the front one last.
  [[nodiscard]] static std::vector<xcb_window_t> windowsOf(X11Session& session, pid_t process);
  void showLocked(X11Session& session, pid_t process, const std::vector<xcb_window_t>& windows);

  std::timed_mutex mutex_;
  X11Connection connection_;
  std::map<pid_t, std::set<xcb_window_t>> hidden_;
};

}  // namespace kr::platform
