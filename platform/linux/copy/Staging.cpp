#include "platform/linux/copy/Staging.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/linux/copy/Attributes.h"
#include "platform/linux/copy/FolderListing.h"
#include "platform/linux/copy/RemoveTree.h"

namespace kr::platform::copy {
namespace {

using posix::FileDescriptor;

constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
constexpr std::size_t kDigits = 16;
constexpr int kAttempts = 100;

std::error_code lastError() noexcept {
  return {errno, std::generic_category()};
}

std::string randomName() {
  constexpr std::string_view kHexadecimal = "0123456789abcdef";
  unsigned char bytes[kDigits] = {};
  (void)::getrandom(bytes, sizeof bytes, 0);
  std::string name(kStagingPrefix);
  for (const unsigned char byte : bytes) name += kHexadecimal[byte % kHexadecimal.size()];
  return name;
}

bool isStagingName(std::string_view name) {
  if (!name.starts_with(kStagingPrefix) || name.size() != kStagingPrefix.size() + kDigits) return false;
  return name.find_first_not_of("0123456789abcdef", kStagingPrefix.size()) == std::string_view::npos;
}

// Whether the name is still taken. Nobody else takes this one, so it is by the same folder.
bool isThere(int parent, const std::string& name) {
  struct stat status {};
  return ::fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 || errno != ENOENT;
}

// Whether the folder is this program's now. Where the file system has no locks, nobody ever gets one, so that
// nobody's folder is taken for a leftover.
bool lock(int folder) noexcept {
  return ::flock(folder, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

std::error_code renameExclusively(int from, const std::string& old, int to, const std::string& name) {
  if (::renameat2(from, old.c_str(), to, name.c_str(), RENAME_NOREPLACE) == 0) return {};
  if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP) return lastError();
  // The file system cannot do both at once. What comes into being at this very moment can only be lost when
  // it is a file, or an empty folder.
  struct stat status {};
  if (::fstatat(to, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
    return std::make_error_code(std::errc::file_exists);
  }
  if (errno != ENOENT || ::renameat(from, old.c_str(), to, name.c_str()) != 0) return lastError();
  return {};
}

}  // namespace

Staging::~Staging() {
  remove();
}

std::error_code Staging::create(int parent) {
  parent_ = parent;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    const std::string name = randomName();
    if (::mkdirat(parent, name.c_str(), S_IRWXU) != 0) {
      if (errno == EEXIST) continue;
      return lastError();
    }
    folder_.reset(::openat(parent, name.c_str(), kFolderFlags));
    // Another program may have taken it for a leftover before it was locked: then it is gone, or will be.
    if (!folder_ && errno != ENOENT) {
      const std::error_code error = lastError();
      ::unlinkat(parent, name.c_str(), AT_REMOVEDIR);
      return error;
    }
    if (!folder_ || !lock(folder_.get()) || !isThere(parent, name)) continue;
    name_ = name;
    return disinherit();
  }
  return std::make_error_code(std::errc::file_exists);
}

// What the surrounding folder passes on is not the product's. Everything below takes after this one.
std::error_code Staging::disinherit() const {
  if (const std::error_code error = removeInheritedAccessLists(folder_.get())) return error;
  // File systems without owners or modes refuse; they pass nothing on.
  const auto isRefusal = [] { return errno == EPERM || errno == EINVAL || errno == ENOTSUP; };
  if (::fchown(folder_.get(), static_cast<uid_t>(-1), Creator::current().group) != 0 && !isRefusal()) {
    return lastError();
  }
  if (::fchmod(folder_.get(), S_IRWXU) != 0 && !isRefusal()) return lastError();
  return {};
}

FileDescriptor Staging::duplicate() const noexcept {
  return FileDescriptor(::fcntl(folder_.get(), F_DUPFD_CLOEXEC, 0));
}

std::error_code Staging::placeFolder(const std::string& name) {
  const std::error_code error = renameExclusively(parent_, name_, parent_, name);
  if (!error) name_.clear();
  return error;
}

std::error_code Staging::placeItem(const std::string& item, const std::string& name) {
  const std::error_code error = renameExclusively(folder_.get(), item, parent_, name);
  if (!error) remove();
  return error;
}

void Staging::remove() noexcept {
  if (!name_.empty()) (void)removeTree(parent_, name_, name_);
  name_.clear();
}

void removeLeftovers(int parent) {
  // The parent's own descriptor must stay at its start for others.
  const FileDescriptor fresh(::openat(parent, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  FolderListing listing;
  if (!fresh || listFolder(fresh.get(), listing)) return;
  while (!listing.folders.empty()) {
    const std::string name = listing.folders.pop();
    if (!isStagingName(name)) continue;
    const FileDescriptor folder(::openat(parent, name.c_str(), kFolderFlags));
    struct stat status {};
    if (!folder || ::fstat(folder.get(), &status) != 0) continue;
    if (status.st_uid != ::geteuid() && ::geteuid() != 0) continue;
    if (::flock(folder.get(), LOCK_EX | LOCK_NB) != 0) continue;
    (void)removeTree(parent, name, name);
  }
}

}  // namespace kr::platform::copy
