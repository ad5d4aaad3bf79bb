// Message digests, from the system's own library. Any thread.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace kr::platform {

// The MD5 digest of the bytes. It names things; it protects nothing.
[[nodiscard]] std::array<std::uint8_t, 16> md5(std::string_view bytes);

}  // namespace kr::platform
