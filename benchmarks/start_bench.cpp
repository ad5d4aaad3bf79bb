// How long the installer takes from its start to a window on the screen, and how much memory it has used by
// then, against a bare window of the same toolkit: both in turn, on an X server of this program's own.
//
//   start.window.ms 412          median of the installer
//   start.window.vs_bare 1.18    median of the ratios
//   start.memory.mib 61
//   start.memory.vs_bare 1.07
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/Child.h"
#include "tests/support/Desktop.h"
#include "tests/support/ScratchFolder.h"

namespace {

constexpr int kRuns = 9;
constexpr int kWarmUps = 2;
constexpr double kLongest = 20;  // seconds until a start counts as failed

struct Disconnect {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

struct Start {
  double milliseconds;
  double mebibytes;
};

double now() {
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

// The most memory that the process has had resident, in MiB.
double peakMemory(pid_t process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("VmHWM:")) return std::strtod(line.c_str() + 6, nullptr) / 1024;
  }
  return 0;
}

// Whether the window is one for a person to look at, not a helper window of the toolkit.
bool isVisibleWindow(xcb_connection_t* connection, const xcb_map_notify_event_t& event) {
  if (event.override_redirect != 0) return false;
  const std::unique_ptr<xcb_get_geometry_reply_t, Free> geometry(
      xcb_get_geometry_reply(connection, xcb_get_geometry(connection, event.window), nullptr));
  return geometry && geometry->width > 300 && geometry->height > 200;
}

bool awaitWindow(xcb_connection_t* connection, double deadline) {
  while (now() < deadline) {
    while (const std::unique_ptr<xcb_generic_event_t, Free> event{xcb_poll_for_event(connection)}) {
      if ((event->response_type & 0x7F) == XCB_MAP_NOTIFY &&
          isVisibleWindow(connection, *reinterpret_cast<xcb_map_notify_event_t*>(event.get()))) {
        return true;
      }
    }
    pollfd server{xcb_get_file_descriptor(connection), POLLIN, 0};
    ::poll(&server, 1, 100);
  }
  return false;
}

std::optional<Start> start(const std::vector<std::string>& words) {
  const Connection connection(xcb_connect(nullptr, nullptr));
  if (xcb_connection_has_error(connection.get()) != 0) return std::nullopt;
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
  const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection.get(), root, XCB_CW_EVENT_MASK, &events);
  xcb_flush(connection.get());

  const double began = now();
  kr::testing::Child program(words);
  if (!awaitWindow(connection.get(), began + kLongest * 1000)) return std::nullopt;
  const Start result{now() - began, peakMemory(program.pid())};
  // Politely, and once it listens: a killed program leaves locks of the toolkit behind that the next one
  // waits for.
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  program.signal(SIGTERM);
  (void)program.wait(5);
  return result;
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace

int main() {
  const kr::testing::ScratchFolder scratch;
  const kr::testing::ScopedVariable home("HOME", scratch.path());
  // What the toolkit has to say about its fonts is of no interest here.
  ::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
  const kr::testing::Desktop desktop({.display = true});
  std::vector<double> milliseconds, timeRatios, mebibytes, memoryRatios;
  for (int run = -kWarmUps; run < kRuns; ++run) {
    const auto installer = start({KR_INSTALLER_PROGRAM, "-sourcePath", KR_SAMPLE_PRODUCT});
    const auto bare = start({KR_BARE_WINDOW});
    if (!installer || !bare) {
      std::fprintf(stderr, "%s shows no window\n", installer ? "the bare program" : "the installer");
      return 1;
    }
    if (run < 0) continue;
    milliseconds.push_back(installer->milliseconds);
    timeRatios.push_back(installer->milliseconds / bare->milliseconds);
    mebibytes.push_back(installer->mebibytes);
    memoryRatios.push_back(installer->mebibytes / bare->mebibytes);
  }
  std::printf("start.window.ms %.0f\n", median(milliseconds));
  std::printf("start.window.vs_bare %.2f\n", median(timeRatios));
  std::printf("start.memory.mib %.0f\n", median(mebibytes));
  std::printf("start.memory.vs_bare %.2f\n", median(memoryRatios));
}
