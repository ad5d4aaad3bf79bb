// The reason of the last system call of this thread that failed.
#pragma once

#include <cerrno>
#include <system_error>

namespace kr::posix {

[[nodiscard]] inline std::error_code lastError() noexcept {
  return {errno, std::generic_category()};
}

}  // namespace kr::posix
