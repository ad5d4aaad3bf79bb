// Connects to a message bus.
#pragma once

#include <string>

#include "platform/linux/GLibOwner.h"

namespace kr::platform {

// A connection of the caller's own to the bus at the address: its end does not end the program. Null without
// a bus; one that does not answer is given up after two seconds. Any thread.
[[nodiscard]] glib::Object<GDBusConnection> connectToBus(const std::string& address);

}  // namespace kr::platform
