#include "platform/linux/copy/FolderChain.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace kr::platform::copy {
namespace {

// Deeper than most bundles, so that hardly one has a folder opened twice.
constexpr std::size_t kOpenLevels = 12;

}  // namespace

bool FolderChain::enter(posix::FileDescriptor folder) {
  struct stat status {};
  if (::fstat(folder.get(), &status) != 0) return false;
  levels_.push_back(
      {std::make_shared<const posix::FileDescriptor>(std::move(folder)), status.st_dev, status.st_ino});
  if (levels_.size() > kOpenLevels) levels_[levels_.size() - 1 - kOpenLevels].folder.reset();
  return true;
}

bool FolderChain::leave(SharedFolder& left) {
  left = std::move(levels_.back().folder);
  levels_.pop_back();
  if (levels_.empty() || levels_.back().folder) return true;
  Level& level = levels_.back();
  posix::FileDescriptor above(::openat(left->get(), "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  struct stat status {};
  if (!above || ::fstat(above.get(), &status) != 0) return false;
  if (status.st_dev != level.device || status.st_ino != level.inode) {
    errno = ESTALE;
    return false;
  }
  level.folder = std::make_shared<const posix::FileDescriptor>(std::move(above));
  return true;
}

}  // namespace kr::platform::copy
