// Versions of processes as numbers.
#pragma once

#include <string_view>

namespace kr {

// Whether `version` is `wanted` or later. Both are numbers between dots; the first pair that differs decides,
// and a missing number is 0. So 2.1 is at least 2.1.0, and 10.9 is not at least 10.10.
[[nodiscard]] bool isAtLeastVersion(std::string_view version, std::string_view wanted);

}  // namespace kr
