#include "platform/linux/X11Connection.h"

#include <xcb/res.h>
#include <xcb/screensaver.h>

#include <string_view>

namespace kr::platform {
namespace {

constexpr std::chrono::seconds kRetryInterval{1};

xcb_intern_atom_cookie_t askForAtom(xcb_connection_t* connection, std::string_view name) {
  return ::xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
}

xcb_atom_t atom(xcb_connection_t* connection, xcb_intern_atom_cookie_t cookie) {
  const X11Reply<xcb_intern_atom_reply_t> reply(::xcb_intern_atom_reply(connection, cookie, nullptr));
  return reply ? reply->atom : XCB_NONE;
}

bool hasExtension(xcb_connection_t* connection, xcb_extension_t* extension) {
  const xcb_query_extension_reply_t* reply = ::xcb_get_extension_data(connection, extension);
  return reply != nullptr && reply->present != 0;
}

// Version 1.2 of the X-Resource extension is the first that tells processes.
bool serverKnowsProcesses(xcb_connection_t* connection) {
  if (!hasExtension(connection, &xcb_res_id)) return false;
  const X11Reply<xcb_res_query_version_reply_t> version(
      ::xcb_res_query_version_reply(connection, ::xcb_res_query_version(connection, 1, 2), nullptr));
  return version && (version->server_major > 1 || (version->server_major == 1 && version->server_minor >= 2));
}

}  // namespace

std::unique_ptr<X11Session> X11Session::open() {
  int screen = 0;
  std::unique_ptr<X11Session> session(new X11Session(::xcb_connect(nullptr, &screen), screen));
  session->screen_ = screen;
  return session->prepare() ? std::move(session) : nullptr;
}

bool X11Session::prepare() {
  if (isLost()) return false;
  ::xcb_prefetch_extension_data(connection_, &xcb_screensaver_id);
  const auto state = askForAtom(connection_, "WM_STATE");
  const auto change = askForAtom(connection_, "WM_CHANGE_STATE");
  windowState_ = atom(connection_, state);
  changeState_ = atom(connection_, change);
  knowsProcesses_ = serverKnowsProcesses(connection_);
  countsIdleTime_ = hasExtension(connection_, &xcb_screensaver_id);
  ewmhReady_ =
      ::xcb_ewmh_init_atoms_replies(&ewmh_, ::xcb_ewmh_init_atoms(connection_, &ewmh_), nullptr) != 0;
  if (!ewmhReady_ || screen_ < 0 || screen_ >= ewmh_.nb_screens) return false;
  root_ = ewmh_.screens[screen_]->root;
  return !isLost();
}

X11Session::~X11Session() {
  if (ewmhReady_) ::xcb_ewmh_connection_wipe(&ewmh_);
  ::xcb_disconnect(connection_);
}

bool X11Session::isLost() const {
  // The end of the server shows only when something is read. Nothing was asked for that comes unasked, but
  // for errors of requests about windows that are gone.
  while (const X11Reply<xcb_generic_event_t> event{::xcb_poll_for_event(connection_)}) {
  }
  return ::xcb_connection_has_error(connection_) != 0;
}

std::string X11Connection::displayName() {
  const char* name = std::getenv("DISPLAY");
  return name != nullptr ? name : "";
}

X11Session* X11Connection::session() {
  const std::string wanted = displayName();
  if (session_ && (session_->isLost() || wanted != display_)) session_.reset();
  if (session_) return session_.get();
  const auto now = std::chrono::steady_clock::now();
  if (wanted.empty() || (wanted == display_ && now < nextAttempt_)) return nullptr;
  display_ = wanted;
  session_ = X11Session::open();
  nextAttempt_ = session_ ? now : now + kRetryInterval;
  if (session_ && opened) opened();
  return session_.get();
}

}  // namespace kr::platform
