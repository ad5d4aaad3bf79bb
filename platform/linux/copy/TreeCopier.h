// Copies the contents of one folder into another, new one, however deep and however many. Not a transaction:
// after a failure, what was copied so far is there.
#pragma once

#include <array>
#include <atomic>
#include <memory>
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

// The first failure of several threads.
class FirstFailure {
 public:
  [[nodiscard]] bool isThere() const noexcept { return isThere_.load(std::memory_order_relaxed); }
  void set(Failure failure);
  [[nodiscard]] std::optional<Failure> take() { return std::move(failure_); }

 private:
  std::atomic<bool> isThere_ = false;
  std::mutex mutex_;
  std::optional<Failure> failure_;
};

class TreeCopier {
 public:
  // `destination` is the open new folder, which its owner alone may enter until the copy is done. The paths
  // name the two trees in failures.
  TreeCopier(std::string sourcePath, std::string destinationPath, posix::FileDescriptor destination,
             Rights rights = Rights::ofSource);

  // Copies an open folder: what is in it, then its own attributes. Once.
  [[nodiscard]] std::optional<Failure> copyFolder(posix::FileDescriptor source);

  // Copies a single file or link into the new folder instead.
  [[nodiscard]] std::optional<Failure> copyItem(Kind kind, const Place& source, const std::string& name);

 private:
  // A folder that is being filled. Whoever does the last thing in it gives it its attributes. It knows its
  // way up instead of its path: the paths of a deep tree together are long.
  struct Folder {
    Folder(std::shared_ptr<Folder> folderAbove, std::string ownName)
        : above(std::move(folderAbove)), name(std::move(ownName)) {}
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    // Below the root, with a slash at the end; empty for the root.
    [[nodiscard]] std::string path() const;

    std::shared_ptr<Folder> above;  // none for the root
    const std::string name;
    Attributes attributes;
    SharedFolder destination;                 // when the walk has left it
    std::atomic<std::size_t> unfinished = 1;  // items, and the walk itself
  };
  // Some of its items, with what it takes to copy them.
  struct Batch {
    std::shared_ptr<Folder> folder;
    SharedFolder source;
    SharedFolder destination;
    std::vector<Item> items;
  };
  struct Level {
    std::shared_ptr<Folder> folder;
    NameStack folders;  // still to be copied
  };

  // The walk; each ends at the first failure.
  void walk(posix::FileDescriptor source);
  void enter(posix::FileDescriptor source, posix::FileDescriptor destination,
             const std::shared_ptr<Folder>& folder);
  void enterChild(const std::string& name);
  void leave();
  void addItems(const std::shared_ptr<Folder>& folder, std::vector<Item> items);

  // Any thread.
  void copyOne(const Batch& batch, std::size_t index, int worker);
  void finishOne(Folder& folder);
  void fail(const Problem& problem, const std::string& path);

  [[nodiscard]] Buffer& buffer(int worker);

  std::string sourcePath_;
  std::string destinationPath_;
  posix::FileDescriptor root_;
  ItemCopier items_;
  std::array<Buffer, Crew::kWorkers> buffers_;
  FolderChain sources_;
  FolderChain destinations_;
  std::vector<Level> levels_;
  FirstFailure failure_;
  Crew crew_;  // ends before what it works with
};

}  // namespace kr::platform::copy
