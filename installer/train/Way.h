// The way to a destination, folder by folder from the root.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "installer/train/Status.h"
#include "installer/train/SystemPlaces.h"
#include "platform/posix/FileDescriptor.h"
#include "platform/replace/SystemFolders.h"

namespace kr::train {

struct Way {
  posix::FileDescriptor parent;  // none where the last folder is missing
  posix::FileDescriptor above;   // the folder above the parent
  SystemPlaces system;           // what no item may take the place of
};

// Opens the folders one after the other. Refused are a component that is a link or no folder, a parent folder
// that is one of the system's own, or that products lie only below, and a folder that everybody may write and
// rename the contents of. Of the folders the last one may be missing. Holds on to what it opened: what is put
// in the way later leads nobody elsewhere.
[[nodiscard]] Checked openWay(
    const std::vector<std::string>& folders, Way& way,
    std::span<const platform::replace::SystemFolder> systemFolders = platform::replace::systemFolders());

}  // namespace kr::train
