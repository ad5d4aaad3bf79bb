#include "tests/support/BusObject.h"

#include <stdexcept>

#include "platform/linux/BusConnection.h"

namespace kr::testing {
namespace {

constexpr const char* kBus = "org.freedesktop.DBus";

}  // namespace

void BusObject::called(GDBusConnection*, const char*, const char*, const char*, const char* method,
                       GVariant* arguments, GDBusMethodInvocation* invocation, gpointer data) {
  static_cast<BusObject*>(data)->handler_(method, arguments, invocation);
}

BusObject::BusObject(const std::string& address, const std::string& name, const std::string& path,
                     const std::string& interface, Handler handler)
    : handler_(std::move(handler)),
      context_(::g_main_context_new()),
      loop_(::g_main_loop_new(context_, FALSE)),
      connection_(platform::connectToBus(address)) {
  if (!connection_) throw std::runtime_error("no bus at " + address);
  GDBusNodeInfo* node = ::g_dbus_node_info_new_for_xml(("<node>" + interface + "</node>").c_str(), nullptr);
  static const GDBusInterfaceVTable kTable{&BusObject::called, nullptr, nullptr, {}};
  ::g_main_context_push_thread_default(context_);
  const bool registered =
      ::g_dbus_connection_register_object(connection_.get(), path.c_str(), node->interfaces[0], &kTable, this,
                                          nullptr, nullptr) != 0;
  ::g_main_context_pop_thread_default(context_);
  ::g_dbus_node_info_unref(node);
  if (!registered) throw std::runtime_error("no object at " + path);
  if (!name.empty() &&
      !call(kBus, "/org/freedesktop/DBus", kBus, "RequestName", ::g_variant_new("(su)", name.c_str(), 4U))) {
    throw std::runtime_error("no name " + name);
  }
  thread_ = std::thread([this] { ::g_main_loop_run(loop_); });
}

BusObject::~BusObject() {
  // Also when the thread has not come to its loop yet.
  GSource* quit = ::g_idle_source_new();
  ::g_source_set_callback(
      quit,
      [](gpointer loop) -> gboolean {
        ::g_main_loop_quit(static_cast<GMainLoop*>(loop));
        return G_SOURCE_REMOVE;
      },
      loop_, nullptr);
  ::g_source_attach(quit, context_);
  ::g_source_unref(quit);
  thread_.join();
  ::g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr);
  ::g_main_loop_unref(loop_);
  ::g_main_context_unref(context_);
}

glib::Variant BusObject::call(const std::string& name, const std::string& path, const std::string& interface,
                              const std::string& method, GVariant* arguments) const {
  return glib::Variant(::g_dbus_connection_call_sync(connection_.get(), name.c_str(), path.c_str(),
                                                     interface.c_str(), method.c_str(), arguments, nullptr,
                                                     G_DBUS_CALL_FLAGS_NONE, 10'000, nullptr, nullptr));
}

}  // namespace kr::testing
