// Reads the system's report on programs that keep the keyboard to themselves. Any thread.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace kr {

// The process IDs that the report names, in its order; one that is named twice comes twice. What follows a
// mark without being a number reads as 0.
[[nodiscard]] std::vector<std::int32_t> secureInputProcessIDs(std::string_view report);

}  // namespace kr
