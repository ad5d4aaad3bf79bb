#include "platform/linux/X11RootWatch.h"

#include <cstdint>
#include <utility>

#include "platform/linux/X11WindowList.h"

namespace kr::platform {
namespace {

// Which events of the window are told from now on: the server has taken the request when this returns. False
// where there is no such window.
bool select(X11Session& session, xcb_window_t window, std::uint32_t events) {
  if (window == XCB_NONE) return false;
  const auto asked =
      ::xcb_change_window_attributes_checked(session.connection(), window, XCB_CW_EVENT_MASK, &events);
  const X11Reply<xcb_generic_error_t> error(::xcb_request_check(session.connection(), asked));
  return !error && ::xcb_connection_has_error(session.connection()) == 0;
}

}  // namespace

X11RootWatch::X11RootWatch(std::unique_ptr<X11Session> session, std::string display)
    : session_(std::move(session)), display_(std::move(display)) {}

std::unique_ptr<X11RootWatch> X11RootWatch::open() {
  std::string display = X11Connection::displayName();
  if (display.empty()) return nullptr;
  std::unique_ptr<X11Session> session = X11Session::open();
  if (!session) return nullptr;
  if (!select(*session, session->root(), XCB_EVENT_MASK_PROPERTY_CHANGE)) return nullptr;
  return std::unique_ptr<X11RootWatch>(new X11RootWatch(std::move(session), std::move(display)));
}

int X11RootWatch::descriptor() const {
  return ::xcb_get_file_descriptor(session_->connection());
}

void X11RootWatch::followActiveWindow() {
  followsActiveWindow_ = true;
  follow(x11::activeWindow(*session_).value_or(XCB_NONE));
}

// Waits for the server, so that what the window's state is afterwards is what it was when the watch began, or
// its change is told. Of the window that was followed before nothing is told any more; it may be gone.
void X11RootWatch::follow(xcb_window_t window) {
  // A new window may have the number of one that is gone.
  if (window != followed_) select(*session_, followed_, XCB_EVENT_MASK_NO_EVENT);
  followed_ = select(*session_, window, XCB_EVENT_MASK_PROPERTY_CHANGE) ? window : XCB_NONE;
}

void X11RootWatch::readEvents(News& news) {
  while (const X11Reply<xcb_generic_event_t> event{::xcb_poll_for_event(session_->connection())}) {
    constexpr std::uint8_t kSentByAnotherClient = 0x80;
    if ((event->response_type & ~kSentByAnotherClient) != XCB_PROPERTY_NOTIFY) continue;
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
    news.windows |= change.atom == session_->ewmh()->_NET_CLIENT_LIST;
    news.active |= change.atom == session_->ewmh()->_NET_ACTIVE_WINDOW;
    news.activeState |= change.atom == session_->ewmh()->_NET_WM_STATE && change.window == followed_;
  }
}

X11RootWatch::News X11RootWatch::take() {
  News news;
  readEvents(news);
  if (news.active && followsActiveWindow_) {
    news.activeState = true;
    xcb_window_t before = XCB_NONE;
    do {
      before = followed_;
      followActiveWindow();
      // Replies bring events along, which the descriptor does not show any more.
      readEvents(news);
    } while (followed_ != before);
  }
  news.lost = ::xcb_connection_has_error(session_->connection()) != 0;
  return news;
}

}  // namespace kr::platform
