#include "platform/linux/AppleEventInbox.h"

#include <poll.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/linux/AppleEventBus.h"
#include "platform/linux/ProcFS.h"
#include "platform/linux/SessionBus.h"

namespace kr::platform {
namespace {

// The name belongs to this process alone: nobody waits for it in a queue.
constexpr std::uint64_t kNameFlags = 0;

// The next value where it is a text; none for any other.
std::optional<std::string> readText(sd_bus_message* message) {
  const char* text = nullptr;
  if (::sd_bus_message_read_basic(message, SD_BUS_TYPE_STRING, &text) <= 0) return std::nullopt;
  return text;
}

std::optional<std::string> readDirectText(sd_bus_message* message) {
  char type = 0;
  const char* contents = nullptr;
  if (::sd_bus_message_peek_type(message, &type, &contents) <= 0) return std::nullopt;
  if (type == SD_BUS_TYPE_STRING) return readText(message);
  if (type != SD_BUS_TYPE_ARRAY || ::sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "s") <= 0) {
    return std::nullopt;
  }
  std::optional<std::string> text = readText(message);
  // Several texts are a list, not a text.
  return ::sd_bus_message_at_end(message, 0) > 0 ? text : std::nullopt;
}

int received(sd_bus_message* message, void* data, sd_bus_error*) {
  // Anything else is answered by the library: an unknown method, a question of the bus.
  if (::sd_bus_message_is_method_call(message, applebus::kInterface, applebus::kMethod) <= 0) return 0;
  std::uint32_t eventClass = 0;
  std::uint32_t eventID = 0;
  if (::sd_bus_message_read(message, "uu", &eventClass, &eventID) <= 0) {
    return ::sd_bus_reply_method_errorf(message, SD_BUS_ERROR_INVALID_ARGS, "no event class and ID");
  }
  const auto& handler = *static_cast<AppleEventInbox::Handler*>(data);
  if (!handler(eventClass, eventID, readDirectText(message))) {
    return ::sd_bus_reply_method_errorf(message, SD_BUS_ERROR_NOT_SUPPORTED, "nothing handles this event");
  }
  return ::sd_bus_reply_method_return(message, nullptr);
}

// Whoever asks for the name hears from the bus whether it is there; nobody here needs to.
int named(sd_bus_message*, void*, sd_bus_error*) {
  return 0;
}

}  // namespace

void AppleEventInbox::CloseBus::operator()(sd_bus* bus) const {
  // Without waiting for what could not be written yet: the other side may never read it.
  ::sd_bus_close_unref(bus);
}

AppleEventInbox::AppleEventInbox(Handler handler) : handler_(std::move(handler)) {}

AppleEventInbox::~AppleEventInbox() = default;

void AppleEventInbox::open() noexcept {
  const std::string address = sessionBusAddress();
  const std::optional<SerialNumber> process = procfs::serialNumber(::getpid());
  if (address.empty() || !process) return;
  sd_bus* made = nullptr;
  if (::sd_bus_new(&made) < 0) return;
  bus_.reset(made);
  const bool opened = ::sd_bus_set_address(made, address.c_str()) >= 0 &&
                      ::sd_bus_set_bus_client(made, 1) >= 0 &&
                      ::sd_bus_add_object(made, nullptr, applebus::kObjectPath, received, &handler_) >= 0 &&
                      ::sd_bus_start(made) >= 0 &&
                      ::sd_bus_request_name_async(made, nullptr, applebus::busName(*process).c_str(),
                                                  kNameFlags, named, nullptr) >= 0;
  if (!opened) bus_.reset();
}

std::optional<BusReadiness> AppleEventInbox::readiness() const noexcept {
  if (!bus_ || ::sd_bus_get_current_message(bus_.get()) != nullptr) return std::nullopt;
  const int descriptor = ::sd_bus_get_fd(bus_.get());
  const int events = ::sd_bus_get_events(bus_.get());
  if (descriptor < 0 || events < 0) return std::nullopt;
  return BusReadiness{.descriptor = descriptor, .write = (events & POLLOUT) != 0};
}

void AppleEventInbox::work(std::chrono::milliseconds atMost) noexcept {
  const auto end = std::chrono::steady_clock::now() + atMost;
  while (bus_) {
    const int progress = ::sd_bus_process(bus_.get(), nullptr);
    if (progress == -EBUSY) return;  // the handler of another event has called
    if (progress < 0) {
      bus_.reset();
    } else if (progress == 0 || std::chrono::steady_clock::now() >= end) {
      return;
    }
  }
}

}  // namespace kr::platform
