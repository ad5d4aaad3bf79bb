// The identity of one running process: two 32-bit words that no other process of this boot shares. A process
// ID alone is handed out again after its process has ended; a serial number is not.
#pragma once

#include <compare>
#include <cstdint>

namespace kr::platform {

struct SerialNumber {
  std::uint32_t high = 0;
  std::uint32_t low = 0;

  friend auto operator<=>(SerialNumber, SerialNumber) = default;
};

}  // namespace kr::platform
