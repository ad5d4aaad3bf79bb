// How long the user has not touched keyboard and mouse, as the X server counts it for the screen saver. The
// caller holds the lock of the session.
#pragma once

#include <chrono>
#include <optional>

#include "platform/linux/X11Connection.h"

namespace kr::platform::x11 {

// None when the server does not count it, or does not answer before the deadline. A server that has stopped
// answering is not waited for.
[[nodiscard]] std::optional<std::chrono::milliseconds> idleTime(
    X11Session& session, std::chrono::steady_clock::time_point deadline);

}  // namespace kr::platform::x11
