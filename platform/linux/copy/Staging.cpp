#include "platform/linux/copy/Staging.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/linux/copy/Attributes.h"
#include "platform/linux/copy/FolderListing.h"
#include "platform/linux/copy/RemoveTree.h"
#include "platform/linux/copy/Rename.h"
#include "platform/posix/LastError.h"
#include "platform/posix/LockedFolder.h"

namespace kr::platform::copy {
namespace {

using posix::FileDescriptor;
using posix::lastError;

}  // namespace

Staging::~Staging() {
  remove();
}

std::error_code Staging::create(int parent) {
  parent_ = parent;
  std::string name;
  if (const std::error_code error = posix::createLockedFolder(parent, kStagingPrefix, name, folder_)) {
    return error;
  }
  name_ = name;
  return disinherit();
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
    if (!posix::isLockedFolderName(kStagingPrefix, name)) continue;
    const FileDescriptor folder = posix::openAbandonedFolder(parent, name);
    struct stat status {};
    if (!folder || ::fstat(folder.get(), &status) != 0) continue;
    if (status.st_uid != ::geteuid() && ::geteuid() != 0) continue;
    (void)removeTree(parent, name, name);
  }
}

}  // namespace kr::platform::copy
