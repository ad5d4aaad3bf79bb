// The times of a file by one name: each system has its own for them.
#pragma once

#include <sys/stat.h>

namespace kr::posix {

template <class Status>
[[nodiscard]] constexpr timespec lastRead(const Status& status) noexcept {
  if constexpr (requires { status.st_atimespec; }) {
    return status.st_atimespec;
  } else {
    return status.st_atim;
  }
}

template <class Status>
[[nodiscard]] constexpr timespec lastChange(const Status& status) noexcept {
  if constexpr (requires { status.st_mtimespec; }) {
    return status.st_mtimespec;
  } else {
    return status.st_mtim;
  }
}

}  // namespace kr::posix
