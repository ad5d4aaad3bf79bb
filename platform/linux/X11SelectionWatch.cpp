#include "platform/linux/X11SelectionWatch.h"

#include <xcb/xfixes.h>

#include <string_view>
#include <utility>

#include "platform/linux/Patience.h"

namespace kr::platform {
namespace {

constexpr std::string_view kSelection = "CLIPBOARD";

// Comes back once everything that was sent before has been done, or the time is up.
void waitForServer(xcb_connection_t* connection) {
  const auto deadline = std::chrono::steady_clock::now() + kPatience;
  const unsigned int question = ::xcb_get_input_focus(connection).sequence;
  static_cast<void>(x11::replyBefore<xcb_get_input_focus_reply_t>(connection, question, deadline));
}

// The server takes requests of an extension once it has agreed on a version.
bool agreeOnVersion(xcb_connection_t* connection) {
  const auto cookie = ::xcb_xfixes_query_version(connection, 1, 0);
  const X11Reply<xcb_xfixes_query_version_reply_t> reply(
      ::xcb_xfixes_query_version_reply(connection, cookie, nullptr));
  return reply != nullptr;
}

}  // namespace

std::unique_ptr<X11SelectionWatch> X11SelectionWatch::open() {
  std::string display = X11Connection::displayName();
  if (display.empty()) return nullptr;
  std::unique_ptr<X11Session> session = X11Session::open();
  if (!session) return nullptr;
  xcb_connection_t* connection = session->connection();
  const xcb_query_extension_reply_t* extension = ::xcb_get_extension_data(connection, &xcb_xfixes_id);
  if (extension == nullptr || extension->present == 0 || !agreeOnVersion(connection)) return nullptr;
  const xcb_atom_t selection = x11::atom(connection, x11::askForAtom(connection, kSelection));
  ::xcb_xfixes_select_selection_input(connection, session->root(), selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
  waitForServer(connection);
  if (::xcb_connection_has_error(connection) != 0) return nullptr;
  const auto event = static_cast<std::uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
  return std::unique_ptr<X11SelectionWatch>(
      new X11SelectionWatch(std::move(session), std::move(display), event));
}

std::optional<long> X11SelectionWatch::takeChanges() {
  // A server that does not answer keeps the rest for the next time.
  waitForServer(session_->connection());
  long changes = 0;
  while (const X11Reply<xcb_generic_event_t> event{::xcb_poll_for_event(session_->connection())}) {
    if (event->response_type == event_) ++changes;
  }
  if (::xcb_connection_has_error(session_->connection()) != 0) return std::nullopt;
  return changes;
}

}  // namespace kr::platform
