#include "platform/linux/AppleEventConnection.h"

#include "platform/linux/BusConnection.h"
#include "platform/linux/SessionBus.h"

namespace kr::platform {

glib::Object<GDBusConnection> AppleEventConnection::get() {
  const std::lock_guard lock(mutex_);
  const std::string address = sessionBusAddress();
  if (connection_ && (address != address_ || ::g_dbus_connection_is_closed(connection_.get()) != FALSE)) {
    connection_.reset();
  }
  if (!connection_ && !address.empty()) {
    connection_ = connectToBus(address);
    address_ = address;
  }
  if (!connection_) return nullptr;
  return glib::Object<GDBusConnection>(g_object_ref(connection_.get()));
}

}  // namespace kr::platform
