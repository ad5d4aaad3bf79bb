// Addresses for systems whose secure HTTP no server takes any more. Any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kr {

// The decimal system version from which on secure HTTP can be used: what the user's setting says, where there
// is one that is a version of system 10.
[[nodiscard]] std::int64_t firstSystemWithSecureHTTP(std::optional<std::int64_t> setting);

// The address with "http" in place of "https" on a system before that; none where it stays as it is.
[[nodiscard]] std::optional<std::u16string> addressWithoutSecureHTTP(std::u16string_view address,
                                                                     std::uint32_t system,
                                                                     std::int64_t firstSystem);

}  // namespace kr
