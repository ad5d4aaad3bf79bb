// The name of the image that shows the user's tint of controls on the running system.
#pragma once

#include <string>

namespace kr {

// "tintYosDarkBlue", for one: the system's look, then the tint. Every tint but blue is graphite.
[[nodiscard]] std::string tintImageName(bool tintIsBlue);

}  // namespace kr
