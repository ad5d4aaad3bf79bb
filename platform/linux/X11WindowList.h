// Questions to the X server about windows, each one round trip for any number of windows. The caller holds
// the lock of the session.
#pragma once

#include <sys/types.h>

#include <optional>
#include <vector>

#include "platform/linux/X11Connection.h"

namespace kr::platform::x11 {

// The windows that the window manager lists: in the order of their age, or from the lowest to the front one.
[[nodiscard]] std::vector<xcb_window_t> clientList(X11Session& session);
[[nodiscard]] std::vector<xcb_window_t> stackingList(X11Session& session);

[[nodiscard]] std::optional<xcb_window_t> activeWindow(X11Session& session);

[[nodiscard]] bool isFullScreen(X11Session& session, xcb_window_t window);

// The owner of each window, 0 where it cannot be had. The server is asked first; what a window says of itself
// counts where the server does not know.
[[nodiscard]] std::vector<pid_t> owners(X11Session& session, const std::vector<xcb_window_t>& windows);

// For each window, whether it is iconified.
[[nodiscard]] std::vector<bool> iconified(X11Session& session, const std::vector<xcb_window_t>& windows);

// For each window, whether it is one to work in: not a menu, a panel of the desktop or the desktop itself.
[[nodiscard]] std::vector<bool> ordinary(X11Session& session, const std::vector<xcb_window_t>& windows);

}  // namespace kr::platform::x11
