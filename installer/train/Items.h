// Looks at what is to be copied and at what it would replace.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "installer/train/Status.h"
#include "platform/posix/FileDescriptor.h"
#include "platform/replace/Replacement.h"

namespace kr::train {

// A folder to copy from.
struct Tree {
  std::string path;
  posix::FileDescriptor folder;
  platform::replace::Identity identity;
};

// Opens the folder at a full path, through links: whoever asks for the copy may name the folder as they like.
// It is that folder from now on, whatever happens to the path. Refused with the status where it is no full
// path or no folder.
[[nodiscard]] Checked openTree(const std::string& path, Status refusal, Tree& tree);

// What has a name in an open folder.
struct Item {
  std::optional<platform::replace::Identity> identity;  // none where nothing has the name
  mode_t mode = 0;
  bool isMountPoint = false;
};

[[nodiscard]] Checked look(const platform::replace::Entry& entry, Item& item);

// Whether the open folder is the folder or lies below it, however it was reached. True also when the way up
// cannot be followed to its end.
[[nodiscard]] bool isInside(int folder, const platform::replace::Identity& outer);

}  // namespace kr::train
