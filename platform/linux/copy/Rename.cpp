#include "platform/linux/copy/Rename.h"

#include <stdio.h>

#include <cerrno>

#include "platform/posix/CheckedRename.h"
#include "platform/posix/LastError.h"

namespace kr::platform::copy {
namespace {

using posix::lastError;

bool isLackOfSupport(int error) noexcept {
  return error == EINVAL || error == ENOSYS || error == ENOTSUP;
}

}  // namespace

std::error_code renameExclusively(int from, const std::string& old, int to,
                                  const std::string& name) noexcept {
  if (::renameat2(from, old.c_str(), to, name.c_str(), RENAME_NOREPLACE) == 0) return {};
  return isLackOfSupport(errno) ? posix::renameIfFree(from, old, to, name) : lastError();
}

std::error_code exchangeNames(int folder, const std::string& name, int otherFolder,
                              const std::string& otherName) noexcept {
  if (::renameat2(folder, name.c_str(), otherFolder, otherName.c_str(), RENAME_EXCHANGE) == 0) return {};
  return isLackOfSupport(errno) ? std::make_error_code(std::errc::not_supported) : lastError();
}

}  // namespace kr::platform::copy
