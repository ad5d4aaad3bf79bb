// The entries of one folder.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "platform/linux/copy/Problem.h"

namespace kr::platform::copy {

enum class Kind { folder, file, link, special };

[[nodiscard]] Kind kindOf(mode_t mode) noexcept;

struct Item {
  std::string name;
  Kind kind;
};

struct FolderListing {
  std::vector<std::string> folders;
  std::vector<Item> items;  // all that is no folder, in the order of the inodes
};

// Lists an open folder from where its descriptor stands, which is the start for one that was just opened.
// Links count as links.
[[nodiscard]] Outcome listFolder(int folder, FolderListing& listing);

}  // namespace kr::platform::copy
