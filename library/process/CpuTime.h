// CPU times as the system's process list writes them.
#pragma once

#include <string_view>

namespace kr {

// Seconds of a "minutes:seconds" text such as "12:03.45", in single precision; 0.0 without a colon.
[[nodiscard]] double cpuSeconds(std::string_view text);

}  // namespace kr
