// The device that alerts and sound effects play on, and the devices that there are. Any thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/AudioDevices.h"

namespace kr {

// The identifier of the default system output device, asked in a scope; none when there is none.
[[nodiscard]] std::optional<std::string> systemOutputIdentifier(platform::AudioScope scope);

// One line for the log about each device of which name, maker and identifier are known.
[[nodiscard]] std::vector<std::string> audioDeviceLines();

}  // namespace kr
