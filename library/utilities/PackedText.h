// Short words kept as a number. Any thread.
#pragma once

#include <cstdint>
#include <string>

namespace kr {

// Five bits a character, the lowest first, until nothing is left: 1 to 26 are the small letters.
[[nodiscard]] std::string unpackedText(std::uint32_t packed);

}  // namespace kr
