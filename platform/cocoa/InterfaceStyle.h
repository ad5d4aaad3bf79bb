// The style of the desktop as the user defaults have it. Any thread.
#pragma once

namespace kr::platform {

// Whether the user default "AppleInterfaceStyle" is there and is "Dark".
[[nodiscard]] bool interfaceStyleIsDark();

}  // namespace kr::platform
