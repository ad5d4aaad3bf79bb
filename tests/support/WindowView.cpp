#include "tests/support/WindowView.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <vector>

#include "platform/linux/X11WindowList.h"

namespace kr::testing {

namespace x11 = platform::x11;
using platform::X11Reply;

std::string WindowView::stacking() {
  std::string titles;
  for (const xcb_window_t window : x11::stackingList(*session_)) titles += title(window);
  return titles;
}

std::string WindowView::iconified() {
  const std::vector<xcb_window_t> windows = x11::stackingList(*session_);
  const std::vector<bool> states = x11::iconified(*session_, windows);
  std::string titles;
  for (std::size_t index = 0; index < windows.size(); ++index) {
    if (states[index]) titles += title(windows[index]);
  }
  std::sort(titles.begin(), titles.end());
  return titles;
}

std::string WindowView::active() {
  const std::optional<xcb_window_t> window = x11::activeWindow(*session_);
  return window ? title(*window) : "";
}

void WindowView::fillScreen(const std::string& wanted, bool fills) {
  xcb_ewmh_connection_t* ewmh = session_->ewmh();
  for (const xcb_window_t window : x11::stackingList(*session_)) {
    if (title(window) != wanted) continue;
    ::xcb_ewmh_request_change_wm_state(
        ewmh, session_->screen(), window, fills ? XCB_EWMH_WM_STATE_ADD : XCB_EWMH_WM_STATE_REMOVE,
        ewmh->_NET_WM_STATE_FULLSCREEN, XCB_NONE, XCB_EWMH_CLIENT_SOURCE_TYPE_NORMAL);
  }
  ::xcb_flush(session_->connection());
}

void WindowView::iconify(const std::string& wanted) {
  for (const xcb_window_t window : x11::stackingList(*session_)) {
    if (title(window) != wanted) continue;
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = session_->changeState();
    event.data.data32[0] = 3;
    ::xcb_send_event(session_->connection(), 0, session_->root(),
                     XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                     reinterpret_cast<const char*>(&event));
  }
  ::xcb_flush(session_->connection());
}

std::string WindowView::title(xcb_window_t window) {
  const auto cookie = ::xcb_get_property(session_->connection(), 0, window, XCB_ATOM_WM_NAME,
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, 64);
  const X11Reply<xcb_get_property_reply_t> reply(
      ::xcb_get_property_reply(session_->connection(), cookie, nullptr));
  if (!reply) return "?";
  return {static_cast<const char*>(::xcb_get_property_value(reply.get())),
          static_cast<std::size_t>(::xcb_get_property_value_length(reply.get()))};
}

OwnWindow::OwnWindow(const std::string& title) : connection_(::xcb_connect(nullptr, nullptr)) {
  if (::xcb_connection_has_error(connection_) != 0) {
    ::xcb_disconnect(connection_);
    throw std::runtime_error("no server");
  }
  const xcb_screen_t* screen = ::xcb_setup_roots_iterator(::xcb_get_setup(connection_)).data;
  const xcb_window_t window = ::xcb_generate_id(connection_);
  ::xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 200, 120, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
  ::xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(title.size()), title.data());
  ::xcb_map_window(connection_, window);
  ::xcb_flush(connection_);
}

OwnWindow::~OwnWindow() {
  ::xcb_disconnect(connection_);
}

}  // namespace kr::testing
