#include "platform/linux/X11Connection.h"

#include <poll.h>
#include <xcb/res.h>
#include <xcb/screensaver.h>
#include <xcb/xcbext.h>

#include <cerrno>
#include <condition_variable>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>
#include <utility>

namespace kr::platform {
namespace {

using std::chrono::steady_clock;

constexpr std::chrono::seconds kRetryInterval{1};
// Far more than a server takes on a busy machine.
constexpr std::chrono::seconds kLongestAttempt{1};

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

namespace x11 {

void* anyReplyBefore(xcb_connection_t* connection, unsigned int request, steady_clock::time_point deadline) {
  ::xcb_flush(connection);
  for (;;) {
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    if (::xcb_poll_for_reply(connection, request, &reply, &error) != 0) {
      const X11Reply<xcb_generic_error_t> owner(error);
      return reply;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - steady_clock::now()).count();
    pollfd readable{.fd = ::xcb_get_file_descriptor(connection), .events = POLLIN, .revents = 0};
    const int count = left > 0 ? ::poll(&readable, 1, static_cast<int>(left)) : 0;
    if (count == 0 || (count < 0 && errno != EINTR)) {
      ::xcb_discard_reply(connection, request);
      return nullptr;
    }
  }
}

xcb_intern_atom_cookie_t askForAtom(xcb_connection_t* connection, std::string_view name) {
  return ::xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
}

xcb_atom_t atom(xcb_connection_t* connection, xcb_intern_atom_cookie_t asked) {
  const X11Reply<xcb_intern_atom_reply_t> reply(::xcb_intern_atom_reply(connection, asked, nullptr));
  return reply ? reply->atom : XCB_NONE;
}

}  // namespace x11

// Connecting has no limit of its own, so it goes on beside the caller.
std::unique_ptr<X11Session> X11Session::open() {
  struct Attempts {
    std::mutex mutex;
    std::condition_variable ended;
    std::set<std::string> late;  // DISPLAY of each that nobody waits for any more
  };
  struct Attempt {
    bool done = false;
    bool givenUp = false;
    std::unique_ptr<X11Session> session;
  };
  static Attempts& attempts = *new Attempts;
  const std::string display = X11Connection::displayName();
  std::unique_lock lock(attempts.mutex);
  if (attempts.late.contains(display)) return nullptr;
  const auto attempt = std::make_shared<Attempt>();
  const auto work = [attempt, display] {
    std::unique_ptr<X11Session> session = connect(display);
    const std::lock_guard guard(attempts.mutex);
    attempt->done = true;
    if (attempt->givenUp) {
      attempts.late.erase(display);
    } else {
      attempt->session = std::move(session);
    }
    attempts.ended.notify_all();
  };
  try {
    std::thread(work).detach();
  } catch (const std::system_error&) {
    return nullptr;
  }
  attempts.ended.wait_for(lock, kLongestAttempt, [&] { return attempt->done; });
  if (!attempt->done) {
    attempt->givenUp = true;
    attempts.late.insert(display);
  }
  return std::move(attempt->session);
}

std::unique_ptr<X11Session> X11Session::connect(const std::string& display) {
  int screen = 0;
  std::unique_ptr<X11Session> session(new X11Session(::xcb_connect(display.c_str(), &screen), screen));
  session->screen_ = screen;
  return session->prepare() ? std::move(session) : nullptr;
}

bool X11Session::prepare() {
  if (isLost()) return false;
  ::xcb_prefetch_extension_data(connection_, &xcb_screensaver_id);
  const auto state = x11::askForAtom(connection_, "WM_STATE");
  const auto change = x11::askForAtom(connection_, "WM_CHANGE_STATE");
  windowState_ = x11::atom(connection_, state);
  changeState_ = x11::atom(connection_, change);
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
