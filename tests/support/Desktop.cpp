#include "tests/support/Desktop.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "platform/posix/FileDescriptor.h"
#include "tests/support/Eventually.h"

namespace kr::testing {
namespace {

constexpr int kStartMilliseconds = 20'000;

struct Pipe {
  posix::FileDescriptor read;
  posix::FileDescriptor write;
};

Pipe makePipe() {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  return {posix::FileDescriptor(ends[0]), posix::FileDescriptor(ends[1])};
}

// The first line that the child writes into the pipe.
std::string firstLine(Pipe& pipe, const char* program) {
  pipe.write.reset();
  std::string line;
  for (;;) {
    pollfd wait{pipe.read.get(), POLLIN, 0};
    char character = 0;
    if (::poll(&wait, 1, kStartMilliseconds) != 1 || ::read(pipe.read.get(), &character, 1) != 1) {
      throw std::runtime_error(std::string(program) + " did not start");
    }
    if (character == '\n') return line;
    line += character;
  }
}

struct Disconnect {
  void operator()(xcb_connection_t* connection) const { ::xcb_disconnect(connection); }
};

// Whether a window manager has taken the display over. The list of windows is the last thing that it
// publishes; a window that is opened earlier may be overlooked.
bool isManaged(const std::string& display) {
  const std::unique_ptr<xcb_connection_t, Disconnect> connection(::xcb_connect(display.c_str(), nullptr));
  if (::xcb_connection_has_error(connection.get()) != 0) return false;
  constexpr char kName[] = "_NET_CLIENT_LIST";
  const auto cookie = ::xcb_intern_atom(connection.get(), 0, std::strlen(kName), kName);
  const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
      ::xcb_intern_atom_reply(connection.get(), cookie, nullptr), &std::free);
  if (!atom) return false;
  const xcb_window_t root = ::xcb_setup_roots_iterator(::xcb_get_setup(connection.get())).data->root;
  const auto property = ::xcb_get_property(connection.get(), 0, root, atom->atom, XCB_ATOM_WINDOW, 0, 1);
  const std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> value(
      ::xcb_get_property_reply(connection.get(), property, nullptr), &std::free);
  return value && value->type == XCB_ATOM_WINDOW;
}

constexpr std::string_view kBusConfiguration = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN" "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=SOCKETS</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

}  // namespace

ScopedVariable::ScopedVariable(std::string name, const std::optional<std::string>& value)
    : name_(std::move(name)) {
  if (const char* previous = std::getenv(name_.c_str())) previous_ = previous;
  if (value) {
    ::setenv(name_.c_str(), value->c_str(), 1);
  } else {
    ::unsetenv(name_.c_str());
  }
}

ScopedVariable::~ScopedVariable() {
  if (previous_) {
    ::setenv(name_.c_str(), previous_->c_str(), 1);
  } else {
    ::unsetenv(name_.c_str());
  }
}

Desktop::Desktop(DesktopParts parts) {
  // Without it the bus would be looked for in the user's own session.
  runtimeVariable_.emplace("XDG_RUNTIME_DIR", folder_.path());
  systemBusVariable_.emplace("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + folder_ / "no-system-bus");
  accessibilityVariable_.emplace("AT_SPI_BUS_ADDRESS", std::nullopt);
  if (parts.bus) startBus();
  busVariable_.emplace("DBUS_SESSION_BUS_ADDRESS", parts.bus ? std::optional(busAddress_) : std::nullopt);
  if (parts.display) startDisplay();
  displayVariable_.emplace("DISPLAY", parts.display ? std::optional(display_) : std::nullopt);
  if (parts.windowManager) startWindowManager();
  if (parts.accessibility) startAccessibility();
}

void Desktop::startDisplay() {
  Pipe number = makePipe();
  server_ = Child({"Xvfb", "-displayfd", std::to_string(number.write.get()), "-screen", "0", "1280x1024x24",
                   "-nolisten", "tcp", "-noreset"},
                  number.write.get());
  display_ = ":" + firstLine(number, "Xvfb");
}

void Desktop::startWindowManager() {
  windowManager_ =
      Child({"openbox", "--sm-disable", "--config-file", KR_TEST_SUPPORT_FOLDER "/../../tools/openbox.xml"});
  if (!eventually([&] { return isManaged(display_); }, 20.0))
    throw std::runtime_error("openbox did not start");
}

void Desktop::startBus() {
  std::string configuration(kBusConfiguration);
  constexpr std::string_view kPlace = "SOCKETS";
  configuration.replace(configuration.find(kPlace), kPlace.size(), folder_.path());
  const std::string file = folder_.file("bus.conf", configuration);
  Pipe address = makePipe();
  bus_ = Child({"dbus-daemon", "--nofork", "--nopidfile", "--config-file=" + file,
                "--print-address=" + std::to_string(address.write.get())},
               address.write.get());
  busAddress_ = firstLine(address, "dbus-daemon");
}

void Desktop::startAccessibility() {
  accessibility_ = Child({"/usr/libexec/at-spi-bus-launcher", "--launch-immediately"});
  const auto answers = [] {
    Child question({"gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path", "/org/a11y/bus",
                    "--method", "org.a11y.Bus.GetAddress"},
                   std::nullopt);
    const std::optional<int> status = question.wait(5.0);
    return status && *status == 0;
  };
  if (!eventually(answers, 20.0)) throw std::runtime_error("the accessibility bus did not start");
}

}  // namespace kr::testing
