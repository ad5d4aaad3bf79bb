#include "platform/linux/X11IdleTime.h"

#include <xcb/screensaver.h>

namespace kr::platform::x11 {
using std::chrono::milliseconds;

std::optional<milliseconds> idleTime(X11Session& session, std::chrono::steady_clock::time_point deadline) {
  if (!session.countsIdleTime()) return std::nullopt;
  xcb_connection_t* connection = session.connection();
  const auto question = ::xcb_screensaver_query_info(connection, session.root());
  const auto reply =
      x11::replyBefore<xcb_screensaver_query_info_reply_t>(connection, question.sequence, deadline);
  if (!reply) return std::nullopt;
  return milliseconds(reply->ms_since_user_input);
}

}  // namespace kr::platform::x11
