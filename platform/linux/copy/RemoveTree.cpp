#include "platform/linux/copy/RemoveTree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <vector>

#include "platform/Paths.h"
#include "platform/linux/copy/FolderChain.h"
#include "platform/linux/copy/FolderListing.h"
#include "platform/posix/FileDescriptor.h"
#include "platform/posix/LastError.h"

namespace kr::platform::copy {
namespace {

using posix::FileDescriptor;

constexpr const char* kStep = "delete";

class TreeRemover {
 public:
  TreeRemover(int folder, std::string path) : parent_(folder), path_(std::move(path)) {}

  std::optional<Failure> remove(const std::string& name) {
    struct stat status {};
    if (::fstatat(parent_, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return failure(errno);
    if (!S_ISDIR(status.st_mode)) return unlink(parent_, name, 0);
    device_ = status.st_dev;
    if (auto failed = enter(parent_, name)) return failed;
    while (!levels_.empty()) {
      if (!levels_.back().folders.empty()) {
        if (auto failed = enter(chain_.folder(), levels_.back().folders.pop())) return failed;
      } else if (auto failed = leave()) {
        return failed;
      }
    }
    return std::nullopt;
  }

 private:
  struct Level {
    std::string name;
    NameStack folders;  // still to be deleted
  };

  Failure failure(int error, const std::string& name = {}) const {
    std::string path = path_;
    for (std::size_t level = 1; level < levels_.size(); ++level)
      path = paths::joined(path, levels_[level].name);
    if (!name.empty() && !levels_.empty()) path = paths::joined(path, name);
    return {kStep, path, {error, std::generic_category()}};
  }

  // What has gone by itself is deleted as well.
  std::optional<Failure> unlink(int folder, const std::string& name, int flags) const {
    if (::unlinkat(folder, name.c_str(), flags) == 0 || errno == ENOENT) return std::nullopt;
    return failure(errno, name);
  }

  std::optional<Failure> enter(int folder, const std::string& name) {
    FileDescriptor opened = open(folder, name);
    struct stat status {};
    if (!opened || ::fstat(opened.get(), &status) != 0) return failure(errno, name);
    if (status.st_dev != device_) return failure(EBUSY, name);
    FolderListing listing;
    if (const Outcome problem = listFolder(opened.get(), listing)) return failure(problem->error, name);
    if (!chain_.enter(std::move(opened))) return failure(errno, name);
    levels_.push_back({name, std::move(listing.folders)});
    for (const Item& item : listing.items) {
      if (auto failed = unlink(chain_.folder(), item.name, 0)) return failed;
    }
    return std::nullopt;
  }

  // Opens a folder such that its entries can be listed and deleted.
  static FileDescriptor open(int folder, const std::string& name) {
    // The place is held first, so that it is this folder whose mode is changed and no other.
    const FileDescriptor held(::openat(folder, name.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status {};
    if (!held || ::fstat(held.get(), &status) != 0) return {};
    if ((status.st_mode & S_IRWXU) != S_IRWXU && status.st_uid == ::geteuid()) {
      const std::string place = "/proc/self/fd/" + std::to_string(held.get());
      (void)::chmod(place.c_str(), (status.st_mode & 07777) | S_IRWXU);
    }
    return FileDescriptor(::openat(held.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  }

  std::optional<Failure> leave() {
    SharedFolder left;
    if (!chain_.leave(left)) return failure(errno);
    const std::string name = std::move(levels_.back().name);
    levels_.pop_back();
    return unlink(levels_.empty() ? parent_ : chain_.folder(), name, AT_REMOVEDIR);
  }

  int parent_;
  std::string path_;
  dev_t device_ = 0;
  FolderChain chain_;
  std::vector<Level> levels_;
};

}  // namespace

std::optional<Failure> removeTree(int folder, const std::string& name, const std::string& path) {
  return TreeRemover(folder, path).remove(name);
}

std::optional<Failure> removeTree(const std::string& path) {
  const std::string name(paths::lastComponent(path));
  if (name.empty() || name == "/" || name == "." || name == "..") {
    return Failure{kStep, path, std::make_error_code(std::errc::invalid_argument)};
  }
  std::string parent(paths::parent(path));
  if (parent.empty()) parent = ".";
  const FileDescriptor folder(::open(parent.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!folder) return Failure{kStep, path, posix::lastError()};
  return removeTree(folder.get(), name, path);
}

}  // namespace kr::platform::copy
