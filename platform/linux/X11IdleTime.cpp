#include "platform/linux/X11IdleTime.h"

#include <poll.h>
#include <xcb/screensaver.h>
#include <xcb/xcbext.h>

#include <cerrno>

namespace kr::platform::x11 {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

// The reply to a request; null when there is none before the deadline.
void* replyBefore(xcb_connection_t* connection, unsigned int request, steady_clock::time_point deadline) {
  ::xcb_flush(connection);
  for (;;) {
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    if (::xcb_poll_for_reply(connection, request, &reply, &error) != 0) {
      const X11Reply<xcb_generic_error_t> owner(error);
      return reply;
    }
    const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now()).count();
    pollfd readable{.fd = ::xcb_get_file_descriptor(connection), .events = POLLIN, .revents = 0};
    const int count = left > 0 ? ::poll(&readable, 1, static_cast<int>(left)) : 0;
    if (count == 0 || (count < 0 && errno != EINTR)) {
      ::xcb_discard_reply(connection, request);
      return nullptr;
    }
  }
}

}  // namespace

std::optional<milliseconds> idleTime(X11Session& session, milliseconds patience) {
  if (!session.countsIdleTime()) return std::nullopt;
  xcb_connection_t* connection = session.connection();
  const auto deadline = steady_clock::now() + patience;
  const auto question = ::xcb_screensaver_query_info(connection, session.root());
  const X11Reply<xcb_screensaver_query_info_reply_t> reply(
      static_cast<xcb_screensaver_query_info_reply_t*>(replyBefore(connection, question.sequence, deadline)));
  if (!reply) return std::nullopt;
  return milliseconds(reply->ms_since_user_input);
}

}  // namespace kr::platform::x11
