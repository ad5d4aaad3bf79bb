// Deleting with nothing but what POSIX has, for systems without a way of their own. Any thread.
#pragma once

#include <optional>

#include "platform/replace/FileSystem.h"

namespace kr::platform::replace {

// What removeEntry() promises. A folder on another volume than the entry is a failure, EBUSY.
[[nodiscard]] std::optional<Failure> removeTree(const Entry& entry);

}  // namespace kr::platform::replace
