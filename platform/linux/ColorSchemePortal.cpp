#include "platform/linux/ColorSchemePortal.h"

#include <poll.h>
#include <systemd/sd-bus.h>

#include <string>
#include <string_view>
#include <utility>

#include "platform/linux/SessionBus.h"

namespace kr::platform {
namespace {

constexpr const char* kName = "org.freedesktop.portal.Desktop";
constexpr const char* kPath = "/org/freedesktop/portal/desktop";
constexpr const char* kInterface = "org.freedesktop.portal.Settings";
constexpr const char* kNamespace = "org.freedesktop.appearance";
constexpr const char* kKey = "color-scheme";

// The number in a variant, or in a variant in it: the older of the two ways to ask wraps the value twice.
std::optional<std::uint32_t> readNumber(sd_bus_message* message) {
  for (;;) {
    char type = 0;
    const char* contents = nullptr;
    if (::sd_bus_message_peek_type(message, &type, &contents) <= 0) return std::nullopt;
    if (type == SD_BUS_TYPE_UINT32) {
      std::uint32_t number = 0;
      if (::sd_bus_message_read_basic(message, type, &number) <= 0) return std::nullopt;
      return number;
    }
    if (type != SD_BUS_TYPE_VARIANT || ::sd_bus_message_enter_container(message, type, contents) <= 0) {
      return std::nullopt;
    }
  }
}

// What a desktop of the future may say beyond these is no preference that is known here.
ColorScheme schemeOf(std::uint32_t value) {
  switch (value) {
    case 1:
      return ColorScheme::dark;
    case 2:
      return ColorScheme::light;
    default:
      return ColorScheme::noPreference;
  }
}

}  // namespace

void ColorSchemePortal::CloseBus::operator()(sd_bus* bus) const {
  // Without waiting for what could not be written yet.
  ::sd_bus_close_unref(bus);
}

ColorSchemePortal::ColorSchemePortal(Changed changed) : changed_(std::move(changed)) {}

ColorSchemePortal::~ColorSchemePortal() = default;

void ColorSchemePortal::open() noexcept {
  const std::string address = sessionBusAddress();
  if (address.empty()) return;
  sd_bus* made = nullptr;
  if (::sd_bus_new(&made) < 0) return;
  bus_.reset(made);
  const auto answer = [](sd_bus_message* message, void* portal, sd_bus_error* error) {
    return answered(message, portal, error);
  };
  const auto change = [](sd_bus_message* message, void* portal, sd_bus_error* error) {
    return changed(message, portal, error);
  };
  // Changes are asked for first, so that none falls between the two.
  asking_ = ::sd_bus_set_address(made, address.c_str()) >= 0 && ::sd_bus_set_bus_client(made, 1) >= 0 &&
            ::sd_bus_start(made) >= 0 &&
            ::sd_bus_match_signal_async(made, nullptr, kName, kPath, kInterface, "SettingChanged", change,
                                        nullptr, this) >= 0 &&
            ::sd_bus_call_method_async(made, nullptr, kName, kPath, kInterface, "Read", answer, this, "ss",
                                       kNamespace, kKey) >= 0;
  if (!asking_) bus_.reset();
}

std::optional<BusReadiness> ColorSchemePortal::readiness() const noexcept {
  if (!bus_) return std::nullopt;
  const int descriptor = ::sd_bus_get_fd(bus_.get());
  const int events = ::sd_bus_get_events(bus_.get());
  if (descriptor < 0 || events < 0) return std::nullopt;
  return BusReadiness{.descriptor = descriptor, .write = (events & POLLOUT) != 0};
}

void ColorSchemePortal::work() noexcept {
  while (bus_) {
    const int progress = ::sd_bus_process(bus_.get(), nullptr);
    if (progress < 0) {
      bus_.reset();
      asking_ = false;
    }
    if (progress <= 0) return;
  }
}

void ColorSchemePortal::await(std::chrono::milliseconds atMost) noexcept {
  const auto end = std::chrono::steady_clock::now() + atMost;
  for (work(); asking_ && bus_; work()) {
    const auto left =
        std::chrono::duration_cast<std::chrono::microseconds>(end - std::chrono::steady_clock::now());
    if (left.count() <= 0 || ::sd_bus_wait(bus_.get(), static_cast<std::uint64_t>(left.count())) < 0) return;
  }
}

void ColorSchemePortal::tell(std::uint32_t value) {
  scheme_ = schemeOf(value);
  changed_(scheme_);
}

int ColorSchemePortal::answered(sd_bus_message* message, void* data, void*) {
  auto& portal = *static_cast<ColorSchemePortal*>(data);
  portal.asking_ = false;
  if (::sd_bus_message_is_method_error(message, nullptr) > 0) return 0;
  if (const auto number = readNumber(message)) portal.tell(*number);
  return 0;
}

int ColorSchemePortal::changed(sd_bus_message* message, void* data, void*) {
  const char* space = nullptr;
  const char* key = nullptr;
  if (::sd_bus_message_read(message, "ss", &space, &key) <= 0) return 0;
  if (std::string_view(space) != kNamespace || std::string_view(key) != kKey) return 0;
  if (const auto number = readNumber(message)) static_cast<ColorSchemePortal*>(data)->tell(*number);
  return 0;
}

}  // namespace kr::platform
