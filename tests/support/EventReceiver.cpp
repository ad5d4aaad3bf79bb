#include "tests/support/EventReceiver.h"

#include <cstdlib>
#include <stdexcept>

#include "platform/linux/AppleEventBus.h"
#include "platform/linux/GLibOwner.h"

namespace kr::testing {

namespace applebus = platform::applebus;

struct EventReceiver::Bus {
  EventReceiver* owner;
  EventAnswer answer;
  GMainContext* context = ::g_main_context_new();
  GMainLoop* loop = ::g_main_loop_new(context, FALSE);
  GDBusConnection* connection = nullptr;
  std::vector<GDBusMethodInvocation*> unanswered;

  Bus(EventReceiver* receiver, EventAnswer reply) : owner(receiver), answer(reply) {}
  Bus(const Bus&) = delete;
  Bus& operator=(const Bus&) = delete;
  ~Bus() {
    for (GDBusMethodInvocation* invocation : unanswered) g_object_unref(invocation);
    if (connection != nullptr) {
      ::g_dbus_connection_close_sync(connection, nullptr, nullptr);
      g_object_unref(connection);
    }
    ::g_main_loop_unref(loop);
    ::g_main_context_unref(context);
  }

  void connect(const std::string& name);
  static void called(GDBusConnection*, const char*, const char*, const char*, const char*,
                     GVariant* arguments, GDBusMethodInvocation* invocation, gpointer data);
};

void EventReceiver::Bus::called(GDBusConnection*, const char*, const char*, const char*, const char*,
                                GVariant* arguments, GDBusMethodInvocation* invocation, gpointer data) {
  auto* bus = static_cast<Bus*>(data);
  ReceivedEvent event{};
  GVariantIter* texts = nullptr;
  ::g_variant_get(arguments, "(uuas)", &event.eventClass, &event.eventID, &texts);
  const char* text = nullptr;
  while (::g_variant_iter_loop(texts, "s", &text) != FALSE) event.directTexts.emplace_back(text);
  ::g_variant_iter_free(texts);
  const GDBusMessageFlags flags =
      ::g_dbus_message_get_flags(::g_dbus_method_invocation_get_message(invocation));
  event.wantsReply = (flags & G_DBUS_MESSAGE_FLAGS_NO_REPLY_EXPECTED) == 0;
  {
    const std::lock_guard lock(bus->owner->mutex_);
    bus->owner->received_.push_back(event);
  }
  switch (bus->answer) {
    case EventAnswer::handled:
      ::g_dbus_method_invocation_return_value(invocation, nullptr);
      break;
    case EventAnswer::refused:
      ::g_dbus_method_invocation_return_dbus_error(invocation, "org.velmora.Refused", "not today");
      break;
    case EventAnswer::never:
      bus->unanswered.push_back(invocation);
      break;
  }
}

void EventReceiver::Bus::connect(const std::string& name) {
  const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  connection = ::g_dbus_connection_new_for_address_sync(
      address != nullptr ? address : "",
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, nullptr);
  if (connection == nullptr) throw std::runtime_error("no session bus");
  const std::string description =
      std::string("<node><interface name='") + applebus::kInterface +
      "'><method name='Send'><arg type='u' direction='in'/><arg type='u' direction='in'/>"
      "<arg type='as' direction='in'/></method></interface></node>";
  GDBusNodeInfo* node = ::g_dbus_node_info_new_for_xml(description.c_str(), nullptr);
  static const GDBusInterfaceVTable kTable{&Bus::called, nullptr, nullptr, {}};
  ::g_main_context_push_thread_default(context);
  ::g_dbus_connection_register_object(connection, applebus::kObjectPath, node->interfaces[0], &kTable, this,
                                      nullptr, nullptr);
  ::g_main_context_pop_thread_default(context);
  ::g_dbus_node_info_unref(node);
  GVariant* reply = ::g_dbus_connection_call_sync(
      connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
      ::g_variant_new("(su)", name.c_str(), 4U), G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
      nullptr);
  if (reply == nullptr) throw std::runtime_error("no bus name");
  ::g_variant_unref(reply);
}

EventReceiver::EventReceiver(platform::SerialNumber process, EventAnswer answer)
    : bus_(std::make_unique<Bus>(this, answer)) {
  bus_->connect(applebus::busName(process));
  thread_ = std::thread([bus = bus_.get()] { ::g_main_loop_run(bus->loop); });
}

EventReceiver::~EventReceiver() {
  // Also when the thread has not come to its loop yet.
  GSource* quit = ::g_idle_source_new();
  ::g_source_set_callback(
      quit,
      [](gpointer loop) -> gboolean {
        ::g_main_loop_quit(static_cast<GMainLoop*>(loop));
        return G_SOURCE_REMOVE;
      },
      bus_->loop, nullptr);
  ::g_source_attach(quit, bus_->context);
  ::g_source_unref(quit);
  thread_.join();
}

std::vector<ReceivedEvent> EventReceiver::received() const {
  const std::lock_guard lock(mutex_);
  return received_;
}

}  // namespace kr::testing
