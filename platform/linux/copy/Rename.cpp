#include "platform/linux/copy/Rename.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>

#include <cerrno>

namespace kr::platform::copy {
namespace {

std::error_code lastError() noexcept {
  return {errno, std::generic_category()};
}

bool isLackOfSupport(int error) noexcept {
  return error == EINVAL || error == ENOSYS || error == ENOTSUP;
}

}  // namespace

std::error_code renameExclusively(int from, const std::string& old, int to,
                                  const std::string& name) noexcept {
  if (::renameat2(from, old.c_str(), to, name.c_str(), RENAME_NOREPLACE) == 0) return {};
  if (!isLackOfSupport(errno)) return lastError();
  // The file system cannot do both at once. What comes into being at this very moment can only be lost when
  // it is a file, or an empty folder.
  struct stat status {};
  if (::fstatat(to, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
    return std::make_error_code(std::errc::file_exists);
  }
  if (errno != ENOENT || ::renameat(from, old.c_str(), to, name.c_str()) != 0) return lastError();
  return {};
}

std::error_code exchangeNames(int folder, const std::string& name, int otherFolder,
                              const std::string& otherName) noexcept {
  if (::renameat2(folder, name.c_str(), otherFolder, otherName.c_str(), RENAME_EXCHANGE) == 0) return {};
  return isLackOfSupport(errno) ? std::make_error_code(std::errc::not_supported) : lastError();
}

}  // namespace kr::platform::copy
