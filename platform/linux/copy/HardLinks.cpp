#include "platform/linux/copy/HardLinks.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

#include "platform/posix/FileDescriptor.h"

namespace kr::platform::copy {
namespace {

// Whether a file system has answered that there can be no further name, or not there. Any other error is one.
bool canHaveNone(int error) {
  return error == EPERM || error == EMLINK || error == EOPNOTSUPP || error == ENOSYS || error == EXDEV;
}

}  // namespace

HardLinks::Made HardLinks::linkOrCreate(const struct stat& status, int folder, const std::string& name,
                                        std::string path, const std::function<bool()>& create) {
  const std::lock_guard lock(mutex_);
  const auto [copy, isFirst] = copies_.try_emplace({status.st_dev, status.st_ino}, path);
  if (!isFirst) {
    if (link(copy->second, folder, name)) return Made::link;
    if (!canHaveNone(errno)) return Made::nothing;
  }
  // Where no link can be made (the file system has none, or no more of them), a copy of its own has to do; it
  // is the one that the names to come are linked to.
  if (!create()) return Made::nothing;
  copy->second = std::move(path);
  return Made::file;
}

bool HardLinks::link(const std::string& path, int folder, const std::string& name) const {
  if (path.size() < PATH_MAX) return ::linkat(root_, path.c_str(), folder, name.c_str(), 0) == 0;
  // Longer than the system takes at a time: walk there.
  posix::FileDescriptor at;
  std::size_t start = 0;
  for (std::size_t slash = path.find('/'); slash != std::string::npos; slash = path.find('/', start)) {
    const std::string component = path.substr(start, slash - start);
    at.reset(
        ::openat(at ? at.get() : root_, component.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!at) return false;
    start = slash + 1;
  }
  return ::linkat(at.get(), path.c_str() + start, folder, name.c_str(), 0) == 0;
}

}  // namespace kr::platform::copy
