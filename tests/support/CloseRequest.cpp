#include "tests/support/CloseRequest.h"

#include "platform/linux/X11Connection.h"

namespace kr::testing {

bool requestClose(std::uint32_t window) {
  const auto session = platform::X11Session::open();
  if (!session) return false;
  ::xcb_ewmh_request_close_window(session->ewmh(), session->screen(), window, XCB_CURRENT_TIME,
                                  XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
  ::xcb_flush(session->connection());
  // It is there once the server has answered.
  const platform::X11Reply<xcb_get_input_focus_reply_t> answer(::xcb_get_input_focus_reply(
      session->connection(), ::xcb_get_input_focus(session->connection()), nullptr));
  return true;
}

}  // namespace kr::testing
