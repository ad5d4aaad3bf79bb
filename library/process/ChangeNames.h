// How a change among the applications is named to the program.
#pragma once

#include <cstdint>
#include <string_view>

namespace kr {

// "started", "ended" or "front" for the event's kind; the empty text for another kind.
[[nodiscard]] std::string_view changeName(std::uint32_t kind);

}  // namespace kr
