// The entries of one folder.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/copy/Problem.h"

namespace kr::platform::copy {

enum class Kind { folder, file, link, special };

[[nodiscard]] Kind kindOf(mode_t mode) noexcept;

struct Item {
  std::string name;
  Kind kind;
};

// Names of which the last one is taken first. They lie one behind the other, because there may be many.
class NameStack {
 public:
  [[nodiscard]] bool empty() const noexcept { return bytes_.empty(); }
  void push(std::string_view name);
  [[nodiscard]] std::string pop();

 private:
  std::string bytes_;  // each name with a zero behind it
};

struct FolderListing {
  NameStack folders;
  std::vector<Item> items;  // all that is no folder, in the order of the inodes
};

// Reads an open folder piece by piece, from where its descriptor stands, which is the start for one that was
// just opened. Links count as links.
class FolderReader {
 public:
  explicit FolderReader(int folder);

  [[nodiscard]] bool isAtEnd() const noexcept { return isAtEnd_; }

  // Adds the next folders to `listing`, and replaces its items by the next ones: about so many.
  [[nodiscard]] Outcome read(FolderListing& listing, std::size_t items);

 private:
  int folder_;
  bool isAtEnd_ = false;
  std::vector<char> buffer_;
};

// All of an open folder at once.
[[nodiscard]] Outcome listFolder(int folder, FolderListing& listing);

}  // namespace kr::platform::copy
