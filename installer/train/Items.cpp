#include "installer/train/Items.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>

#include <cerrno>

#include "platform/Paths.h"
#include "platform/posix/LastError.h"

namespace kr::train {
namespace {

using platform::Failure;
using platform::replace::Entry;
using platform::replace::Identity;

std::string reason(const char* step, const std::string& path) {
  return Failure{step, path, posix::lastError()}.text();
}

}  // namespace

Checked openTree(const std::string& path, Status refusal, Tree& tree) {
  tree.path = paths::withoutTrailingSlashes(path);
  if (!path.starts_with('/')) return Refusal{refusal, path + ": it is no full path"};
  tree.folder.reset(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  struct stat status {};
  if (!tree.folder || ::fstat(tree.folder.get(), &status) != 0) return Refusal{refusal, reason("open", path)};
  tree.identity = {status.st_dev, status.st_ino};
  return std::nullopt;
}

Checked look(const Entry& entry, Item& item) {
  item = {};
  struct stat status {};
  if (::fstatat(entry.folder, entry.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
    if (errno == ENOENT) return std::nullopt;
    return Refusal{Status::destinationUnreachable, reason("look at", entry.path)};
  }
  item.identity = {status.st_dev, status.st_ino};
  item.mode = status.st_mode;
  item.isMountPoint = platform::replace::isMountPoint(entry);
  return std::nullopt;
}

bool isInside(int folder, const Identity& outer) {
  Identity last;
  for (std::string way = "."; way.size() < PATH_MAX; way += "/..") {
    struct stat status {};
    if (::fstatat(folder, way.c_str(), &status, 0) != 0) return true;
    const Identity at{status.st_dev, status.st_ino};
    if (at == outer) return true;
    if (at == last) return false;  // the root is its own parent
    last = at;
  }
  return true;
}

}  // namespace kr::train
