#include "platform/replace/FileSystem.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/acl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/CheckedRename.h"
#include "platform/posix/LastError.h"
#include "platform/replace/TreeRemoval.h"

namespace kr::platform::replace {
namespace {

using posix::lastError;

}  // namespace

posix::FileDescriptor openFolder(int above, const std::string& name) noexcept {
  return posix::FileDescriptor(
      ::openat(above, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

bool isMountPoint(const Entry& entry) noexcept {
  struct stat item {};
  struct stat folder {};
  return ::fstatat(entry.folder, entry.name.c_str(), &item, AT_SYMLINK_NOFOLLOW) == 0 &&
         ::fstat(entry.folder, &folder) == 0 && item.st_dev != folder.st_dev;
}

std::error_code removeInheritedAccessLists(int item) noexcept {
  const acl_t none = ::acl_init(0);
  if (none == nullptr) return lastError();
  const std::error_code error = ::acl_set_fd(item, none) == 0 ? std::error_code{} : lastError();
  ::acl_free(none);
  // A file system without access lists passes none on.
  return error == std::errc::not_supported ? std::error_code{} : error;
}

std::optional<Failure> removeEntry(const Entry& entry) {
  return removeTree(entry);
}

std::error_code renameExclusively(int from, const std::string& old, int to,
                                  const std::string& name) noexcept {
  if (::renameatx_np(from, old.c_str(), to, name.c_str(), RENAME_EXCL) == 0) return {};
  return errno == ENOTSUP ? posix::renameIfFree(from, old, to, name) : lastError();
}

std::error_code exchangeNames(int folder, const std::string& name, int otherFolder,
                              const std::string& otherName) noexcept {
  if (::renameatx_np(folder, name.c_str(), otherFolder, otherName.c_str(), RENAME_SWAP) == 0) return {};
  return errno == ENOTSUP ? std::make_error_code(std::errc::not_supported) : lastError();
}

// The files' contents have been handed to the drive one by one; this makes the drive write them, and the
// names.
std::error_code bringToDisk(int folder) noexcept {
  if (::fcntl(folder, F_FULLFSYNC) == 0 || ::fsync(folder) == 0) return {};
  return lastError();
}

}  // namespace kr::platform::replace
