// Message digests, from the system's own library. Any thread.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace kr::platform {

using MD5Digest = std::array<std::uint8_t, 16>;

// Takes bytes; called as often as there are more.
using TakeBytes = std::function<void(std::string_view)>;

// The MD5 digest of all bytes that `produce` hands to the function it is called with. It names things; it
// protects nothing.
[[nodiscard]] MD5Digest md5(const std::function<void(const TakeBytes&)>& produce);

// The MD5 digest of the bytes.
[[nodiscard]] inline MD5Digest md5(std::string_view bytes) {
  return md5([bytes](const TakeBytes& take) { take(bytes); });
}

// The digest as 32 lower-case hexadecimal digits.
[[nodiscard]] std::string hexadecimal(const MD5Digest& digest);

}  // namespace kr::platform
