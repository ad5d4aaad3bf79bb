#include "platform/replace/FileSystem.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/linux/copy/Attributes.h"
#include "platform/linux/copy/FolderListing.h"
#include "platform/linux/copy/RemoveTree.h"
#include "platform/linux/copy/Rename.h"
#include "platform/linux/copy/TreeCopier.h"
#include "platform/posix/LastError.h"

namespace kr::platform::replace {
namespace {

using posix::FileDescriptor;

constexpr int kFolderFlags = O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

Failure failure(const char* step, const std::string& path) {
  return {step, path, posix::lastError()};
}

std::optional<Failure> copyFolder(const Entry& source, const Entry& destination) {
  FileDescriptor tree(::openat(source.folder, source.name.c_str(), O_RDONLY | kFolderFlags));
  if (!tree) return failure("open", source.path);
  if (::mkdirat(destination.folder, destination.name.c_str(), S_IRWXU) != 0) {
    return failure("create folder", destination.path);
  }
  FileDescriptor folder(::openat(destination.folder, destination.name.c_str(), O_RDONLY | kFolderFlags));
  if (!folder) return failure("open", destination.path);
  copy::TreeCopier copier(source.path, destination.path, std::move(folder), copy::Rights::ofSystem);
  return copier.copyFolder(std::move(tree));
}

}  // namespace

FileDescriptor openFolder(int above, const std::string& name) noexcept {
  FileDescriptor folder(::openat(above, name.c_str(), O_RDONLY | kFolderFlags));
  // One that can perhaps not be listed, but entered and written.
  if (!folder && errno == EACCES) folder.reset(::openat(above, name.c_str(), O_PATH | kFolderFlags));
  return folder;
}

bool isMountPoint(const Entry& entry) noexcept {
  struct statx status {};
  if (::statx(entry.folder, entry.name.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_TYPE, &status) !=
      0) {
    return false;
  }
  if ((status.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0) {
    return (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
  }
  // Older systems do not tell; another volume does.
  struct stat item {};
  struct stat folder {};
  return ::fstatat(entry.folder, entry.name.c_str(), &item, AT_SYMLINK_NOFOLLOW) == 0 &&
         ::fstat(entry.folder, &folder) == 0 && item.st_dev != folder.st_dev;
}

std::error_code removeInheritedAccessLists(int item) noexcept {
  return copy::removeInheritedAccessLists(item);
}

std::optional<Failure> copyEntry(const Entry& source, const Entry& destination) {
  struct stat status {};
  if (::fstatat(source.folder, source.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
    return failure("look at", source.path);
  }
  const copy::Kind kind = copy::kindOf(status.st_mode);
  if (kind == copy::Kind::folder) return copyFolder(source, destination);
  FileDescriptor folder(::fcntl(destination.folder, F_DUPFD_CLOEXEC, 0));
  if (!folder) return failure("open", destination.path);
  copy::TreeCopier copier(source.path, destination.path, std::move(folder), copy::Rights::ofSystem);
  return copier.copyItem(kind, {source.folder, source.name}, destination.name);
}

std::optional<Failure> removeEntry(const Entry& entry) {
  return copy::removeTree(entry.folder, entry.name, entry.path);
}

std::error_code renameExclusively(int from, const std::string& old, int to,
                                  const std::string& name) noexcept {
  return copy::renameExclusively(from, old, to, name);
}

std::error_code exchangeNames(int folder, const std::string& name, int otherFolder,
                              const std::string& otherName) noexcept {
  return copy::exchangeNames(folder, name, otherFolder, otherName);
}

std::error_code bringToDisk(int folder) noexcept {
  if (::syncfs(folder) == 0) return {};
  return posix::lastError();
}

}  // namespace kr::platform::replace
