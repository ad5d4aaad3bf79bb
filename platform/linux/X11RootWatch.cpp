#include "platform/linux/X11RootWatch.h"

#include <cstdint>
#include <utility>

namespace kr::platform {

X11RootWatch::X11RootWatch(std::unique_ptr<X11Session> session, std::string display)
    : session_(std::move(session)), display_(std::move(display)) {}

std::unique_ptr<X11RootWatch> X11RootWatch::open() {
  std::string display = X11Connection::displayName();
  if (display.empty()) return nullptr;
  std::unique_ptr<X11Session> session = X11Session::open();
  if (!session) return nullptr;
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  const auto asked = ::xcb_change_window_attributes_checked(session->connection(), session->root(),
                                                            XCB_CW_EVENT_MASK, &events);
  // Waits for the server, so that what happens after this call is told.
  const X11Reply<xcb_generic_error_t> error(::xcb_request_check(session->connection(), asked));
  if (error) return nullptr;
  return std::unique_ptr<X11RootWatch>(new X11RootWatch(std::move(session), std::move(display)));
}

int X11RootWatch::descriptor() const {
  return ::xcb_get_file_descriptor(session_->connection());
}

X11RootWatch::News X11RootWatch::take() {
  News news;
  while (const X11Reply<xcb_generic_event_t> event{::xcb_poll_for_event(session_->connection())}) {
    constexpr std::uint8_t kSentByAnotherClient = 0x80;
    if ((event->response_type & ~kSentByAnotherClient) != XCB_PROPERTY_NOTIFY) continue;
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
    news.windows |= change.atom == session_->ewmh()->_NET_CLIENT_LIST;
    news.active |= change.atom == session_->ewmh()->_NET_ACTIVE_WINDOW;
  }
  news.lost = ::xcb_connection_has_error(session_->connection()) != 0;
  return news;
}

}  // namespace kr::platform
