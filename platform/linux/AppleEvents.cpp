#include "platform/AppleEvents.h"

#include <algorithm>

#include "platform/SystemServices.h"
#include "platform/linux/AppleEventBus.h"
#include "platform/linux/AppleEventConnection.h"
#include "platform/linux/ProcFS.h"

namespace kr::platform {
namespace {

// The statuses of the Apple Event Manager.
constexpr std::int32_t kNoSuchProcess = -600;
constexpr std::int32_t kConnectionInvalid = -609;
constexpr std::int32_t kNotHandled = -1708;
constexpr std::int32_t kTimedOut = -1712;

// Time-outs that are not a number of ticks.
constexpr std::int32_t kDefaultTimeout = -1;
constexpr std::int32_t kNoTimeout = -2;
constexpr int kDefaultMilliseconds = 60'000;

// How long the bus itself may take to answer.
constexpr int kBusMilliseconds = 1000;

constexpr const char* kBusName = "org.freedesktop.DBus";
constexpr const char* kBusPath = "/org/freedesktop/DBus";

int milliseconds(std::int32_t ticks) {
  if (ticks == kNoTimeout) return G_MAXINT;
  if (ticks == kDefaultTimeout) return kDefaultMilliseconds;
  // 0 would not even let the message go out.
  return static_cast<int>(std::clamp<long long>(static_cast<long long>(ticks) * 1000 / 60, 1, G_MAXINT - 1));
}

std::optional<AppleEventError> failed(std::int32_t status) {
  return AppleEventError{AppleEventError::Step::send, status};
}

// A text by itself and a list of one text are the same here (AppleEventBus.h).
GVariant* arguments(const AppleEvent& event) {
  GVariantBuilder texts;
  ::g_variant_builder_init(&texts, G_VARIANT_TYPE("as"));
  if (event.directText) {
    // The bus refuses text that is not UTF-8, and drops who sends it.
    const glib::String valid(
        ::g_utf8_make_valid(event.directText->data(), static_cast<gssize>(event.directText->size())));
    ::g_variant_builder_add(&texts, "s", valid.get());
  }
  return ::g_variant_new(applebus::kArgumentTypes, event.eventClass, event.eventID, &texts);
}

glib::Object<GDBusMessage> message(const AppleEvent& event, const std::string& receiver) {
  glib::Object<GDBusMessage> result(::g_dbus_message_new_method_call(
      receiver.c_str(), applebus::kObjectPath, applebus::kInterface, applebus::kMethod));
  ::g_dbus_message_set_body(result.get(), arguments(event));
  return result;
}

std::int32_t statusOf(const GError& error) {
  if (error.domain == G_DBUS_ERROR) {
    switch (error.code) {
      case G_DBUS_ERROR_SERVICE_UNKNOWN:
      case G_DBUS_ERROR_NAME_HAS_NO_OWNER:
        return kNoSuchProcess;
      case G_DBUS_ERROR_NO_REPLY:  // the receiver ended before it replied
      case G_DBUS_ERROR_DISCONNECTED:
        return kConnectionInvalid;
      case G_DBUS_ERROR_TIMEOUT:
      case G_DBUS_ERROR_TIMED_OUT:
        return kTimedOut;
      default:
        return kNotHandled;
    }
  }
  if (error.domain == G_IO_ERROR) {
    if (error.code == G_IO_ERROR_TIMED_OUT) return kTimedOut;
    if (error.code == G_IO_ERROR_DBUS_ERROR) return kNotHandled;
  }
  return kConnectionInvalid;
}

std::optional<AppleEventError> sendAndWait(GDBusConnection* bus, const AppleEvent& event,
                                           const std::string& receiver) {
  const glib::Object<GDBusMessage> request = message(event, receiver);
  ::g_dbus_message_set_flags(request.get(), G_DBUS_MESSAGE_FLAGS_NO_AUTO_START);
  GError* raw = nullptr;
  const glib::Object<GDBusMessage> reply(::g_dbus_connection_send_message_with_reply_sync(
      bus, request.get(), G_DBUS_SEND_MESSAGE_FLAGS_NONE, milliseconds(event.timeoutTicks), nullptr, nullptr,
      &raw));
  if (reply) ::g_dbus_message_to_gerror(reply.get(), &raw);
  const glib::Error error(raw);
  return error ? failed(statusOf(*error)) : std::nullopt;
}

// Nobody replies to the event, so the bus is asked afterwards whether somebody was there to take it. Its
// answer also says that the event has left this program, which may end right away.
std::optional<AppleEventError> sendOnly(GDBusConnection* bus, const AppleEvent& event,
                                        const std::string& receiver) {
  const glib::Object<GDBusMessage> request = message(event, receiver);
  ::g_dbus_message_set_flags(request.get(),
                             static_cast<GDBusMessageFlags>(G_DBUS_MESSAGE_FLAGS_NO_REPLY_EXPECTED |
                                                            G_DBUS_MESSAGE_FLAGS_NO_AUTO_START));
  GError* raw = nullptr;
  if (::g_dbus_connection_send_message(bus, request.get(), G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, &raw) ==
      FALSE) {
    const glib::Error error(raw);
    return failed(kConnectionInvalid);
  }
  const glib::Variant answer(::g_dbus_connection_call_sync(
      bus, kBusName, kBusPath, kBusName, "NameHasOwner", ::g_variant_new("(s)", receiver.c_str()),
      G_VARIANT_TYPE("(b)"), G_DBUS_CALL_FLAGS_NONE, kBusMilliseconds, nullptr, nullptr));
  if (!answer) return failed(kConnectionInvalid);
  gboolean hasOwner = FALSE;
  ::g_variant_get(answer.get(), "(b)", &hasOwner);
  return hasOwner != FALSE ? std::nullopt : failed(kNoSuchProcess);
}

class BusAppleEvents final : public AppleEvents {
 public:
  std::optional<AppleEventError> send(const AppleEvent& event) override {
    const std::optional<SerialNumber> receiver = target(event);
    if (!receiver) return failed(kNoSuchProcess);
    const glib::Object<GDBusConnection> bus = connection_.get();
    if (!bus) return failed(kConnectionInvalid);
    const bool waits = (event.sendMode & kSendWaitsForReply) == kSendWaitsForReply;
    const std::string name = applebus::busName(*receiver);
    return waits ? sendAndWait(bus.get(), event, name) : sendOnly(bus.get(), event, name);
  }

 private:
  static std::optional<SerialNumber> target(const AppleEvent& event) {
    if (const auto* serial = std::get_if<SerialNumber>(&event.target)) return *serial;
    return procfs::serialNumber(std::get<pid_t>(event.target));
  }

  AppleEventConnection connection_;
};

}  // namespace

AppleEvents& systemAppleEvents() noexcept {
  static BusAppleEvents& events = *new BusAppleEvents;
  return events;
}

}  // namespace kr::platform
