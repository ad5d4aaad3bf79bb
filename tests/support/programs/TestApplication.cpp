// The executable of the applications that tests start. It does what its words say and then waits for the
// signal that ends it. It does not outlive the test program.
//
//   ready N       writes to descriptor N and closes it once all other words are done
//   stubborn      ignores polite requests to end
//   private       does not let other programs of the user look at it
//   slow N        ends N milliseconds after a polite request
//   window NAME   opens a window with this title, one after the other
//   comm NAME     takes this name in the kernel's list
//   exec PATH     replaces itself by the program at the path when it is sent SIGUSR1
//   copies        puts something on the clipboard whenever it is sent SIGUSR2; has to have a window
//   busy N        uses N milliseconds of user CPU time
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <time.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace {

volatile sig_atomic_t endDelay = 0;
volatile sig_atomic_t copies = 0;
std::string execPath;

void endLater(int) {
  ::usleep(static_cast<useconds_t>(endDelay) * 1000);
  ::_exit(0);
}

void execNow(int) {
  ::execl(execPath.c_str(), execPath.c_str(), static_cast<char*>(nullptr));
}

void copyLater(int) {
  copies = copies + 1;
}

xcb_atom_t clipboard(xcb_connection_t* connection) {
  const auto asked = ::xcb_intern_atom(connection, 0, 9, "CLIPBOARD");
  xcb_intern_atom_reply_t* reply = ::xcb_intern_atom_reply(connection, asked, nullptr);
  const xcb_atom_t atom = reply->atom;
  std::free(reply);
  return atom;
}

// Being the owner of the selection is having put something there.
void copyNow(xcb_connection_t* connection) {
  const xcb_screen_t* screen = ::xcb_setup_roots_iterator(::xcb_get_setup(connection)).data;
  const xcb_window_t owner = ::xcb_generate_id(connection);
  ::xcb_create_window(connection, 0, owner, screen->root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
  ::xcb_set_selection_owner(connection, owner, clipboard(connection), XCB_CURRENT_TIME);
  ::xcb_flush(connection);
}

void useTime(long milliseconds) {
  timespec used{};
  volatile unsigned work = 0;
  do {
    for (int round = 0; round < 100000; ++round) work = work + 1;
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
  } while (used.tv_sec * 1000 + used.tv_nsec / 1000000 < milliseconds);
}

bool openWindow(xcb_connection_t* connection, const std::string& title) {
  const xcb_screen_t* screen = ::xcb_setup_roots_iterator(::xcb_get_setup(connection)).data;
  const xcb_window_t window = ::xcb_generate_id(connection);
  const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  ::xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 200, 120, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, XCB_CW_EVENT_MASK, &events);
  ::xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(title.size()), title.data());
  ::xcb_map_window(connection, window);
  ::xcb_flush(connection);
  // The next window is to lie above this one, so this one has to be there first.
  while (xcb_generic_event_t* event = ::xcb_wait_for_event(connection)) {
    const bool mapped = (event->response_type & 0x7F) == XCB_MAP_NOTIFY;
    std::free(event);
    if (mapped) return true;
  }
  return false;
}

// Events of the server are taken so that they do not pile up.
[[noreturn]] void waitForTheEnd(xcb_connection_t* connection) {
  for (;;) {
    pollfd server{connection != nullptr ? ::xcb_get_file_descriptor(connection) : -1, POLLIN, 0};
    // The signal to copy comes in the meantime only.
    sigset_t none;
    ::sigemptyset(&none);
    ::ppoll(&server, 1, nullptr, &none);
    if (connection == nullptr) continue;
    for (; copies > 0; copies = copies - 1) copyNow(connection);
    while (xcb_generic_event_t* event = ::xcb_poll_for_event(connection)) std::free(event);
    if (::xcb_connection_has_error(connection) != 0) ::_exit(4);
  }
}

}  // namespace

int main(int count, char** words) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  xcb_connection_t* connection = nullptr;
  int ready = -1;
  for (int at = 1; at < count; ++at) {
    const std::string_view word = words[at];
    if (word == "copies") {
      sigset_t signal;
      ::sigemptyset(&signal);
      ::sigaddset(&signal, SIGUSR2);
      ::sigprocmask(SIG_BLOCK, &signal, nullptr);
      ::signal(SIGUSR2, copyLater);
      continue;
    }
    if (word == "stubborn") {
      ::signal(SIGTERM, SIG_IGN);
      continue;
    }
    if (word == "private") {
      ::prctl(PR_SET_DUMPABLE, 0);
      continue;
    }
    const char* value = at + 1 < count ? words[++at] : "";
    if (word == "ready") {
      ready = std::atoi(value);
    } else if (word == "slow") {
      endDelay = std::atoi(value);
      ::signal(SIGTERM, endLater);
    } else if (word == "window") {
      if (connection == nullptr) connection = ::xcb_connect(nullptr, nullptr);
      if (::xcb_connection_has_error(connection) != 0 || !openWindow(connection, value)) return 2;
    } else if (word == "comm") {
      ::prctl(PR_SET_NAME, value);
    } else if (word == "exec") {
      execPath = value;
      ::signal(SIGUSR1, execNow);
    } else if (word == "busy") {
      useTime(std::atol(value));
    } else {
      return 3;
    }
  }
  if (ready >= 0) {
    if (::write(ready, "r", 1) != 1) return 5;
    ::close(ready);
  }
  waitForTheEnd(connection);
}
