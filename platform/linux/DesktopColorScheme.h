// Whether the user's desktop is light or dark, kept up to date out of the main run loop.
#pragma once

#include <functional>
#include <optional>

namespace kr::platform {

// Whether the desktop prefers dark; none where it says nothing. The first call on the main thread asks the
// desktop, and waits for a moment at most; later ones answer what is known. Any thread.
[[nodiscard]] std::optional<bool> desktopPrefersDark();

// Begins to ask the desktop, so that the answer may be there when it is wanted. Does not wait. Main thread.
void askDesktopColorScheme();

// Has a function called on the main thread whenever what desktopPrefersDark() answers may have changed. It
// must not throw. Main thread.
void onDesktopColorSchemeChange(std::function<void()> changed);

}  // namespace kr::platform
