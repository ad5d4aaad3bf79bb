// Copies the contents of one folder into another, new one, however deep and however many. Not a transaction:
// after a failure, what was copied so far is there.
#pragma once

#include <array>
#include <atomic>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/Failure.h"
#include "platform/linux/copy/Crew.h"
#include "platform/linux/copy/FolderChain.h"
#include "platform/linux/copy/FolderListing.h"
#include "platform/linux/copy/ItemCopier.h"
#include "platform/posix/FileDescriptor.h"

namespace kr::platform::copy {

class TreeCopier {
 public:
  // `destination` is the open new folder, which its owner alone may enter until the copy is done. The paths
  // name the two trees in failures.
  TreeCopier(std::string sourcePath, std::string destinationPath, posix::FileDescriptor destination);

  // Copies an open folder: what is in it, then its own attributes. Once.
  [[nodiscard]] std::optional<Failure> copyFolder(posix::FileDescriptor source);

  // Copies a single file or link into the new folder instead.
  [[nodiscard]] std::optional<Failure> copyItem(Kind kind, const Place& source, const std::string& name);

 private:
  struct Level {
    std::size_t pathSize;  // of the path of the folder above
    Attributes attributes;
    std::vector<std::string> folders;  // still to be copied
  };

  std::optional<Failure> enter(posix::FileDescriptor source, posix::FileDescriptor destination,
                               std::size_t pathSize);
  std::optional<Failure> enterChild(const std::string& name);
  std::optional<Failure> copyItems(const std::vector<Item>& items);
  std::optional<Failure> leave();

  // A failure at the folder that is worked on, or at the item of that name in it.
  [[nodiscard]] Failure failure(const Problem& problem, const std::string& name = {}) const;
  [[nodiscard]] Buffer& buffer(int worker);

  std::string sourcePath_;
  std::string destinationPath_;
  posix::FileDescriptor root_;
  ItemCopier items_;
  Crew crew_;
  std::array<Buffer, Crew::kWorkers> buffers_;
  FolderChain sources_;
  FolderChain destinations_;
  std::vector<Level> levels_;
  std::string path_;  // of the folder that is worked on, below the root; with a slash at the end
};

}  // namespace kr::platform::copy
