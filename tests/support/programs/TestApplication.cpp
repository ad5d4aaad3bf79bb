// The executable of the applications that tests start. It does what its words say, writes "ready" and then
// waits for the signal that ends it. It does not outlive the test program.
//
//   stubborn      ignores polite requests to end
//   slow N        ends N milliseconds after a polite request
//   window NAME   opens a window with this title, one after the other
//   exec PATH     after "ready", replaces itself by the program at the path, once it is sent SIGUSR1
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

volatile sig_atomic_t endDelay = 0;

void endLater(int) {
  ::usleep(static_cast<useconds_t>(endDelay) * 1000);
  ::_exit(0);
}

bool openWindow(xcb_connection_t* connection, const std::string& title) {
  const xcb_screen_t* screen = ::xcb_setup_roots_iterator(::xcb_get_setup(connection)).data;
  const xcb_window_t window = ::xcb_generate_id(connection);
  ::xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 200, 120, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
  ::xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(title.size()), title.data());
  ::xcb_map_window(connection, window);
  return ::xcb_flush(connection) > 0;
}

std::string execPath;

void execNow(int) {
  ::execl(execPath.c_str(), execPath.c_str(), static_cast<char*>(nullptr));
}

}  // namespace

int main(int count, char** words) {
  // The end of the test program must not leave applications behind.
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  xcb_connection_t* connection = nullptr;
  for (int at = 1; at < count; ++at) {
    const std::string_view word = words[at];
    const char* value = at + 1 < count ? words[at + 1] : "";
    if (word == "stubborn") {
      ::signal(SIGTERM, SIG_IGN);
    } else if (word == "slow") {
      endDelay = std::atoi(value);
      ::signal(SIGTERM, endLater);
      ++at;
    } else if (word == "window") {
      if (connection == nullptr) connection = ::xcb_connect(nullptr, nullptr);
      if (::xcb_connection_has_error(connection) != 0 || !openWindow(connection, value)) return 2;
      ++at;
    } else if (word == "exec") {
      execPath = value;
      ::signal(SIGUSR1, execNow);
      ++at;
    } else {
      return 3;
    }
  }
  std::puts("ready");
  std::fflush(stdout);
  for (;;) {
    // Events of the server are taken so that they do not pile up.
    pollfd server{connection != nullptr ? ::xcb_get_file_descriptor(connection) : -1, POLLIN, 0};
    ::poll(&server, 1, -1);
    if (connection == nullptr) continue;
    while (xcb_generic_event_t* event = ::xcb_poll_for_event(connection)) std::free(event);
    if (::xcb_connection_has_error(connection) != 0) return 4;
  }
}
