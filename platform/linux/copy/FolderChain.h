// The way from the root of a tree down to the folder that is worked on, as open descriptors. Only the
// innermost few folders are held open; one further up is opened again through the ".." of its child when the
// walk comes back to it. So a tree may be deeper than a path may be long, or than descriptors may be open.
#pragma once

#include <sys/types.h>

#include <memory>
#include <vector>

#include "platform/posix/FileDescriptor.h"

namespace kr::platform::copy {

// An open folder that also whoever still works in it keeps open.
using SharedFolder = std::shared_ptr<const posix::FileDescriptor>;

class FolderChain {
 public:
  // Goes down into an open folder. False with errno when it cannot be looked at.
  [[nodiscard]] bool enter(posix::FileDescriptor folder);

  // The innermost folder.
  [[nodiscard]] const SharedFolder& shared() const noexcept { return levels_.back().folder; }
  [[nodiscard]] int folder() const noexcept { return shared()->get(); }

  // Goes up one level. `left` becomes the folder that was the innermost. False with errno when the folder
  // above cannot be opened again; ESTALE when the folder has been moved elsewhere meanwhile.
  [[nodiscard]] bool leave(SharedFolder& left);

 private:
  struct Level {
    SharedFolder folder;  // null while it is not held open
    dev_t device;
    ino_t inode;
  };
  std::vector<Level> levels_;
};

}  // namespace kr::platform::copy
