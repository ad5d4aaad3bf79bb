// Where the session's message bus is. Any thread.
#pragma once

#include <string>

namespace kr::platform {

// The address of the session bus by its usual places (DBUS_SESSION_BUS_ADDRESS, then the user's run-time
// folder); empty when there is none. A bus is never started.
[[nodiscard]] std::string sessionBusAddress();

}  // namespace kr::platform
