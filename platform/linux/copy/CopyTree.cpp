#include "platform/linux/copy/CopyTree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <string_view>

#include "platform/Paths.h"
#include "platform/linux/copy/Staging.h"
#include "platform/linux/copy/TreeCopier.h"
#include "platform/posix/FileDescriptor.h"

namespace kr::platform::copy {
namespace {

using posix::FileDescriptor;

// A single file or link in its staging folder.
constexpr const char* kItem = "item";

Failure failed(const char* step, const std::string& path, int error = errno) {
  return {step, path, {error, std::generic_category()}};
}

std::string folderOf(std::string_view path) {
  const std::string_view parent = paths::parent(path);
  return parent.empty() ? "." : std::string(parent);
}

bool isItemName(std::string_view name) {
  return !name.empty() && name != "/" && name != "." && name != "..";
}

// A folder that can perhaps not be listed, but entered and written.
FileDescriptor openFolder(const std::string& path) {
  FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder && errno == EACCES) folder.reset(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  return folder;
}

// Whether the open folder is the folder with this status or lies below it; goes up folder by folder, so links
// and mounted folders make no difference. False with errno 0; true with errno set when the way up is barred.
bool isInside(int folder, const struct stat& outer) {
  FileDescriptor at(::openat(folder, ".", O_PATH | O_DIRECTORY | O_CLOEXEC));
  struct stat last {};
  for (;;) {
    struct stat status {};
    if (!at || ::fstat(at.get(), &status) != 0) return true;
    errno = 0;
    if (status.st_dev == outer.st_dev && status.st_ino == outer.st_ino) return true;
    if (status.st_dev == last.st_dev && status.st_ino == last.st_ino)
      return false;  // the root is its own parent
    last = status;
    at.reset(::openat(at.get(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
  }
}

class Copy {
 public:
  Copy(const std::string& source, const std::string& destination, Durability durability)
      : source_(source),
        destination_(destination),
        durability_(durability),
        name_(paths::lastComponent(destination)) {}

  std::optional<Failure> run() {
    if (auto failure = openSource()) return failure;
    if (auto failure = openDestination()) return failure;
    removeLeftovers(parent_.get());
    if (const std::error_code error = staging_.create(parent_.get())) {
      return Failure{"create a folder beside", destination_, error};
    }
    if (auto failure = build()) return failure;
    return place();
  }

 private:
  std::optional<Failure> openSource() {
    sourceName_ = paths::lastComponent(source_);
    if (!isItemName(sourceName_)) return failed("copy", source_, EINVAL);
    sourceFolder_.reset(::open(folderOf(source_).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    struct stat status {};
    if (!sourceFolder_ ||
        ::fstatat(sourceFolder_.get(), sourceName_.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
      return failed("open", source_);
    }
    kind_ = kindOf(status.st_mode);
    if (kind_ != Kind::folder) return std::nullopt;
    tree_.reset(
        ::openat(sourceFolder_.get(), sourceName_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!tree_) return failed("open", source_);
    return std::nullopt;
  }

  std::optional<Failure> openDestination() {
    if (!isItemName(name_)) return failed("copy to", destination_, EINVAL);
    parent_ = openFolder(folderOf(destination_));
    if (!parent_) return failed("open", folderOf(destination_));
    struct stat status {};
    if (::fstatat(parent_.get(), name_.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
      return failed("copy to", destination_, EEXIST);
    }
    if (errno != ENOENT) return failed("copy to", destination_);
    if (!tree_) return std::nullopt;
    if (::fstat(tree_.get(), &status) != 0) return failed("look at", source_);
    if (!isInside(parent_.get(), status)) return std::nullopt;
    if (errno != 0) return failed("find the way up from", folderOf(destination_));
    return failed("copy a folder into itself, to", destination_, EINVAL);
  }

  std::optional<Failure> build() {
    FileDescriptor root = staging_.duplicate();
    if (!root) return failed("open a folder beside", destination_);
    TreeCopier copier(source_, destination_, std::move(root));
    if (kind_ == Kind::folder) return copier.copyFolder(std::move(tree_));
    return copier.copyItem(kind_, {sourceFolder_.get(), sourceName_}, kItem);
  }

  std::optional<Failure> place() {
    // A crash of the system must not show the name with files whose contents never reached the disk. One call
    // for the whole file system costs one commit of its journal; one call per file would cost thousands.
    // It also reports room or hardware that turned out missing only when the data was written.
    const bool isDurable = durability_ == Durability::onDisk;
    if (isDurable && ::syncfs(staging_.folder()) != 0) return failed("write to the disk", destination_);
    const std::error_code error =
        kind_ == Kind::folder ? staging_.placeFolder(name_) : staging_.placeItem(kItem, name_);
    if (error) return Failure{"give the copy its name,", destination_, error};
    // The copy is complete and visible; should its name be lost with the power, then wholly.
    if (isDurable) (void)::fsync(parent_.get());
    return std::nullopt;
  }

  const std::string& source_;
  const std::string& destination_;
  const Durability durability_;
  std::string sourceName_;
  std::string name_;
  Kind kind_ = Kind::special;
  FileDescriptor sourceFolder_;
  FileDescriptor tree_;    // the source, where it is a folder
  FileDescriptor parent_;  // outlives the staging folder
  Staging staging_;
};

}  // namespace

std::optional<Failure> copyTree(const std::string& source, const std::string& destination,
                                Durability durability) {
  try {
    return Copy(source, destination, durability).run();
  } catch (const std::bad_alloc&) {
    return failed("copy", source, ENOMEM);
  }
}

}  // namespace kr::platform::copy
