// A connection of our own to the X server, beside that of the toolkit. It is made when it is first wanted,
// and made anew after the server was lost or DISPLAY has changed. Not thread-safe: the owner locks.
#pragma once

#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace kr::platform {

// Owns what XCB allocates with malloc: replies, errors, events.
struct FreeX11 {
  void operator()(void* memory) const { std::free(memory); }
};
template <class Type>
using X11Reply = std::unique_ptr<Type, FreeX11>;

namespace x11 {

// The reply to a request, to be freed; null when there is none before the deadline. It is not waited for any
// longer, and thrown away when it comes.
[[nodiscard]] void* anyReplyBefore(xcb_connection_t* connection, unsigned int request,
                                   std::chrono::steady_clock::time_point deadline);

// The same for a request whose reply has this type.
template <class Type>
[[nodiscard]] X11Reply<Type> replyBefore(xcb_connection_t* connection, unsigned int request,
                                         std::chrono::steady_clock::time_point deadline) {
  return X11Reply<Type>(static_cast<Type*>(anyReplyBefore(connection, request, deadline)));
}

// The number of a name: two steps, so that several names take one round trip. None without an answer.
[[nodiscard]] xcb_intern_atom_cookie_t askForAtom(xcb_connection_t* connection, std::string_view name);
[[nodiscard]] xcb_atom_t atom(xcb_connection_t* connection, xcb_intern_atom_cookie_t asked);

}  // namespace x11

// One working connection and what every request needs to know of the server.
class X11Session {
 public:
  // Null where there is no server at DISPLAY, or none that answers within a second. While an attempt goes on
  // that took longer, further ones at the same DISPLAY do not wait. Any thread.
  [[nodiscard]] static std::unique_ptr<X11Session> open();
  ~X11Session();
  X11Session(const X11Session&) = delete;
  X11Session& operator=(const X11Session&) = delete;

  [[nodiscard]] bool isLost() const;

  [[nodiscard]] xcb_connection_t* connection() const { return connection_; }
  [[nodiscard]] xcb_ewmh_connection_t* ewmh() { return &ewmh_; }
  [[nodiscard]] int screen() const { return screen_; }
  [[nodiscard]] xcb_window_t root() const { return root_; }
  [[nodiscard]] xcb_atom_t windowState() const { return windowState_; }
  [[nodiscard]] xcb_atom_t changeState() const { return changeState_; }
  // Whether the server can say which process a window belongs to.
  [[nodiscard]] bool knowsProcesses() const { return knowsProcesses_; }
  // Whether the server counts for how long the user has touched nothing.
  [[nodiscard]] bool countsIdleTime() const { return countsIdleTime_; }

 private:
  explicit X11Session(xcb_connection_t* connection, int screen) : connection_(connection), screen_(screen) {}
  static std::unique_ptr<X11Session> connect(const std::string& display);
  bool prepare();

  xcb_connection_t* connection_;
  int screen_;
  xcb_ewmh_connection_t ewmh_{};
  bool ewmhReady_ = false;
  xcb_window_t root_ = XCB_NONE;
  xcb_atom_t windowState_ = XCB_NONE;
  xcb_atom_t changeState_ = XCB_NONE;
  bool knowsProcesses_ = false;
  bool countsIdleTime_ = false;
};

class X11Connection {
 public:
  // The session in use; null without a server. A server that did not answer is not asked again for a second,
  // unless DISPLAY names another one.
  [[nodiscard]] X11Session* session();

  // Called whenever session() has made a new one.
  std::function<void()> opened;

  // DISPLAY; empty without it.
  [[nodiscard]] static std::string displayName();

 private:
  std::unique_ptr<X11Session> session_;
  std::string display_;
  std::chrono::steady_clock::time_point nextAttempt_;
};

}  // namespace kr::platform
