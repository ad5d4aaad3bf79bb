// What a window manager or a task bar does when the user closes a window.
#pragma once

#include <cstdint>

namespace kr::testing {

// Asks the window manager of the display in DISPLAY to close the window with this ID, which asks the
// application. False without a display.
bool requestClose(std::uint32_t window);

}  // namespace kr::testing
