#include "platform/linux/AccessibilityBus.h"

#include <systemd/sd-bus.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <utility>
#include <vector>

#include "platform/linux/SessionBus.h"

namespace kr::platform {
namespace {

using std::chrono::microseconds;
using std::chrono::steady_clock;

// How long a bus may take to take us, and anybody on it to answer.
constexpr std::chrono::seconds kConnectTime{2};
constexpr microseconds kAnswerTime = std::chrono::seconds{1};

constexpr const char* kRegistry = "org.a11y.atspi.Registry";
constexpr const char* kRegistryPath = "/org/a11y/atspi/registry";
constexpr const char* kRootPath = "/org/a11y/atspi/accessible/root";
constexpr const char* kNullPath = "/org/a11y/atspi/null";
constexpr const char* kAccessible = "org.a11y.atspi.Accessible";

struct FreeMessage {
  void operator()(sd_bus_message* message) const { ::sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, FreeMessage>;

// The reply to a method call; null for an error. `fill` adds the arguments.
template <class Fill>
Message call(sd_bus* bus, const char* destination, const char* path, const char* interface,
             const char* method, Fill fill) {
  sd_bus_message* made = nullptr;
  if (::sd_bus_message_new_method_call(bus, &made, destination, path, interface, method) < 0) return nullptr;
  const Message request(made);
  if (fill(request.get()) < 0) return nullptr;
  sd_bus_message* reply = nullptr;
  if (::sd_bus_call(bus, request.get(), static_cast<std::uint64_t>(kAnswerTime.count()), nullptr, &reply) <
      0) {
    return nullptr;
  }
  return Message(reply);
}

Message call(sd_bus* bus, const char* destination, const char* path, const char* interface,
             const char* method) {
  return call(bus, destination, path, interface, method, [](sd_bus_message*) { return 0; });
}

std::optional<pid_t> processOf(sd_bus* bus, const std::string& name) {
  const Message reply = call(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                             "GetConnectionUnixProcessID", [&](sd_bus_message* request) {
                               return ::sd_bus_message_append(request, "s", name.c_str());
                             });
  std::uint32_t pid = 0;
  if (!reply || ::sd_bus_message_read(reply.get(), "u", &pid) <= 0) return std::nullopt;
  return static_cast<pid_t>(pid);
}

// The bus names of all applications that take part.
std::vector<std::string> applications(sd_bus* bus) {
  std::vector<std::string> names;
  const Message reply = call(bus, kRegistry, kRootPath, kAccessible, "GetChildren");
  if (!reply || ::sd_bus_message_enter_container(reply.get(), SD_BUS_TYPE_ARRAY, "(so)") <= 0) return names;
  const char* name = nullptr;
  const char* path = nullptr;
  while (::sd_bus_message_read(reply.get(), "(so)", &name, &path) > 0) names.emplace_back(name);
  return names;
}

}  // namespace

void AccessibilityBus::CloseBus::operator()(sd_bus* bus) const {
  // Without waiting for what could not be written yet.
  ::sd_bus_close_unref(bus);
}

AccessibilityBus::AccessibilityBus(Bus bus) : bus_(std::move(bus)) {
  source_.emplace(::sd_bus_get_fd(bus_.get()), [this] { work(); });
}

AccessibilityBus::~AccessibilityBus() {
  close();
}

void AccessibilityBus::close() {
  // The run loop lets go of the descriptor before it is closed.
  source_.reset();
  bus_.reset();
}

AccessibilityBus::Bus AccessibilityBus::connect(const std::string& address) {
  sd_bus* made = nullptr;
  if (address.empty() || ::sd_bus_new(&made) < 0) return nullptr;
  Bus bus(made);
  if (::sd_bus_set_address(made, address.c_str()) < 0 || ::sd_bus_set_bus_client(made, 1) < 0 ||
      ::sd_bus_start(made) < 0) {
    return nullptr;
  }
  const auto end = steady_clock::now() + kConnectTime;
  while (::sd_bus_is_ready(made) <= 0) {
    const int progress = ::sd_bus_process(made, nullptr);
    if (progress < 0) return nullptr;
    if (progress > 0) continue;
    const auto left = std::chrono::duration_cast<microseconds>(end - steady_clock::now());
    if (left.count() <= 0 || ::sd_bus_wait(made, static_cast<std::uint64_t>(left.count())) < 0)
      return nullptr;
  }
  return bus;
}

std::string AccessibilityBus::address() {
  if (const char* given = std::getenv("AT_SPI_BUS_ADDRESS"); given != nullptr && *given != '\0') return given;
  const Bus session = connect(sessionBusAddress());
  if (!session) return {};
  const Message reply = call(session.get(), "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress");
  const char* address = nullptr;
  if (!reply || ::sd_bus_message_read(reply.get(), "s", &address) <= 0) return {};
  return address;
}

std::shared_ptr<AccessibilityBus> AccessibilityBus::open() {
  Bus bus = connect(address());
  return bus ? std::shared_ptr<AccessibilityBus>(new AccessibilityBus(std::move(bus))) : nullptr;
}

std::optional<std::string> AccessibilityBus::application(pid_t pid) {
  if (!isOpen()) return std::nullopt;
  std::optional<std::string> found;
  for (const std::string& name : applications(bus_.get())) {
    if (processOf(bus_.get(), name) != pid) continue;
    found = name;
    break;
  }
  work();
  return found;
}

bool AccessibilityBus::registerEvent(const std::string& name, const std::string& application) {
  const Message reply =
      call(bus_.get(), kRegistry, kRegistryPath, kRegistry, "RegisterEvent", [&](sd_bus_message* request) {
        return ::sd_bus_message_append(request, "sass", name.c_str(), 0, application.c_str());
      });
  if (!reply) return false;
  ++registered_[name];
  return true;
}

void AccessibilityBus::deregisterEvent(const std::string& name) {
  // The registry takes back a name for all applications at once.
  if (--registered_[name] > 0) return;
  registered_.erase(name);
  if (!isOpen()) return;
  static_cast<void>(
      call(bus_.get(), kRegistry, kRegistryPath, kRegistry, "DeregisterEvent",
           [&](sd_bus_message* request) { return ::sd_bus_message_append(request, "s", name.c_str()); }));
  work();
}

std::unique_ptr<AccessibilityBus::Listening> AccessibilityBus::listen(const std::string& application,
                                                                      const std::string& name,
                                                                      Listener listener) {
  std::optional<AccessibleEventName> event = parseEventName(name);
  if (!isOpen() || !event) return nullptr;
  const auto orNull = [](const std::string& text) { return text.empty() ? nullptr : text.c_str(); };
  // An application tells a registered event to everybody on the bus who wants to know of it.
  if (!registerEvent(name, application)) return nullptr;
  std::unique_ptr<Listening> listening(new Listening(*this, name, std::move(*event), std::move(listener)));
  const int status = ::sd_bus_match_signal(
      bus_.get(), &listening->slot_, application.c_str(), nullptr, listening->event_.interface.c_str(),
      orNull(listening->event_.member),
      [](sd_bus_message* message, void* data, sd_bus_error* error) {
        return Listening::received(message, data, error);
      },
      listening.get());
  if (status < 0) return nullptr;
  work();
  return isOpen() ? std::move(listening) : nullptr;
}

void AccessibilityBus::work() {
  while (isOpen()) {
    const int progress = ::sd_bus_process(bus_.get(), nullptr);
    if (progress == -EBUSY) return;  // a listener has called
    if (progress < 0) close();
    if (progress <= 0) return;
  }
}

AccessibilityBus::Listening::Listening(AccessibilityBus& bus, std::string name, AccessibleEventName event,
                                       Listener listener)
    : bus_(bus), name_(std::move(name)), event_(std::move(event)), listener_(std::move(listener)) {}

AccessibilityBus::Listening::~Listening() {
  ::sd_bus_slot_unref(slot_);
  bus_.deregisterEvent(name_);
}

int AccessibilityBus::Listening::received(sd_bus_message* message, void* data, void*) {
  const auto& listening = *static_cast<const Listening*>(data);
  const char* detail = nullptr;
  if (::sd_bus_message_read_basic(message, SD_BUS_TYPE_STRING, &detail) <= 0) detail = "";
  const AccessibleEventName event{.interface = ::sd_bus_message_get_interface(message),
                                  .member = ::sd_bus_message_get_member(message),
                                  .detail = detail};
  if (!listening.event_.covers(event)) return 0;
  const std::string path = ::sd_bus_message_get_path(message);
  listening.listener_(path == kNullPath ? std::string() : path, eventNameText(event));
  return 0;
}

}  // namespace kr::platform
