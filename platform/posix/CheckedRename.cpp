#include "platform/posix/CheckedRename.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>

#include "platform/posix/LastError.h"

namespace kr::posix {

std::error_code renameIfFree(int from, const std::string& old, int to, const std::string& name) noexcept {
  struct stat status {};
  if (::fstatat(to, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
    return std::make_error_code(std::errc::file_exists);
  }
  if (errno != ENOENT || ::renameat(from, old.c_str(), to, name.c_str()) != 0) return lastError();
  return {};
}

}  // namespace kr::posix
