#include "platform/linux/X11Desktop.h"

#include "platform/linux/Patience.h"
#include "platform/linux/X11IdleTime.h"
#include "platform/linux/X11WindowList.h"

namespace kr::platform {
namespace {

constexpr std::uint32_t kIconicState = 3;  // as WM_CHANGE_STATE names it

void iconify(X11Session& session, xcb_window_t window) {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = session.changeState();
  event.data.data32[0] = kIconicState;
  ::xcb_send_event(session.connection(), 0, session.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
}

void raise(X11Session& session, xcb_window_t window) {
  ::xcb_ewmh_request_restack_window(session.ewmh(), session.screen(), window, XCB_NONE, XCB_STACK_MODE_ABOVE);
}

// Asked for as a pager does: the user has chosen this application, so the window manager need not guard the
// focus.
void activate(X11Session& session, xcb_window_t window) {
  ::xcb_ewmh_request_change_active_window(session.ewmh(), session.screen(), window,
                                          XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER, XCB_CURRENT_TIME, XCB_NONE);
}

}  // namespace

X11Desktop& X11Desktop::shared() {
  static X11Desktop& desktop = *new X11Desktop;
  return desktop;
}

void X11Desktop::setOpenedHandler(std::function<void()> handler) {
  const std::lock_guard lock(mutex_);
  connection_.opened = std::move(handler);
}

std::set<pid_t> X11Desktop::windowOwners() {
  const std::lock_guard lock(mutex_);
  X11Session* session = connection_.session();
  if (session == nullptr) return {};
  const std::vector<pid_t> owners = x11::owners(*session, x11::clientList(*session));
  std::set<pid_t> result(owners.begin(), owners.end());
  result.erase(0);
  return result;
}

std::optional<pid_t> X11Desktop::activeProcess() {
  const std::lock_guard lock(mutex_);
  X11Session* session = connection_.session();
  const std::optional<xcb_window_t> window = session ? x11::activeWindow(*session) : std::nullopt;
  if (!window) return std::nullopt;
  const pid_t owner = x11::owners(*session, {*window}).front();
  return owner != 0 ? std::optional(owner) : std::nullopt;
}

bool X11Desktop::activeWindowFillsScreen() {
  const std::lock_guard lock(mutex_);
  X11Session* session = connection_.session();
  const std::optional<xcb_window_t> window = session ? x11::activeWindow(*session) : std::nullopt;
  return window && x11::isFullScreen(*session, *window);
}

std::vector<xcb_window_t> X11Desktop::windowsOf(X11Session& session, pid_t process) {
  const std::vector<xcb_window_t> all = x11::stackingList(session);
  const std::vector<pid_t> owners = x11::owners(session, all);
  std::vector<xcb_window_t> own;
  for (std::size_t index = 0; index < all.size(); ++index) {
    if (owners[index] == process) own.push_back(all[index]);
  }
  const std::vector<bool> ordinary = x11::ordinary(session, own);
  std::vector<xcb_window_t> result;
  for (std::size_t index = 0; index < own.size(); ++index) {
    if (ordinary[index]) result.push_back(own[index]);
  }
  return result;
}

void X11Desktop::bringToFront(pid_t process, bool frontWindowOnly) {
  const std::lock_guard lock(mutex_);
  X11Session* session = connection_.session();
  if (session == nullptr) return;
  const std::vector<xcb_window_t> windows = windowsOf(*session, process);
  const std::vector<bool> iconified = x11::iconified(*session, windows);
  std::vector<xcb_window_t> shown;
  for (std::size_t index = 0; index < windows.size(); ++index) {
    if (!iconified[index]) shown.push_back(windows[index]);
  }
  if (shown.empty()) {
    showLocked(*session, process, windows);
    shown = windows;
  }
  if (!shown.empty()) {
    if (!frontWindowOnly) {
      for (const xcb_window_t window : shown) raise(*session, window);
    }
    activate(*session, shown.back());
  }
  ::xcb_flush(session->connection());
}

void X11Desktop::hide(pid_t process) {
  const std::lock_guard lock(mutex_);
  X11Session* session = connection_.session();
  if (session == nullptr) return;
  const std::vector<xcb_window_t> windows = windowsOf(*session, process);
  const std::vector<bool> iconified = x11::iconified(*session, windows);
  for (std::size_t index = 0; index < windows.size(); ++index) {
    if (iconified[index]) continue;
    iconify(*session, windows[index]);
    hidden_[process].insert(windows[index]);
  }
  ::xcb_flush(session->connection());
}

void X11Desktop::show(pid_t process) {
  const std::lock_guard lock(mutex_);
  X11Session* session = connection_.session();
  if (session == nullptr) return;
  showLocked(*session, process, windowsOf(*session, process));
  ::xcb_flush(session->connection());
}

void X11Desktop::showLocked(X11Session& session, pid_t process, const std::vector<xcb_window_t>& windows) {
  const std::set<xcb_window_t> remembered = std::move(hidden_[process]);
  hidden_.erase(process);
  std::vector<xcb_window_t> wanted;
  for (const xcb_window_t window : windows) {
    if (remembered.contains(window)) wanted.push_back(window);
  }
  if (wanted.empty()) wanted = windows;
  // Mapping is what the window manager takes as the request to show an iconified window.
  for (const xcb_window_t window : wanted) ::xcb_map_window(session.connection(), window);
}

std::optional<std::chrono::milliseconds> X11Desktop::idleTime() {
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  const std::unique_lock lock(mutex_, deadline);
  X11Session* session = lock.owns_lock() ? connection_.session() : nullptr;
  return session != nullptr ? x11::idleTime(*session, deadline) : std::nullopt;
}

}  // namespace kr::platform
