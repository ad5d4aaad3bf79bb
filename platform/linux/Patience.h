// How long a question about the desktop or the machine is waited for.
#pragma once

#include <chrono>

namespace kr::platform {

// As long as a service that is up takes many times over; who asks would feel a longer time. A service that
// has not answered by then is taken for one that does not.
inline constexpr std::chrono::milliseconds kPatience{40};

}  // namespace kr::platform
