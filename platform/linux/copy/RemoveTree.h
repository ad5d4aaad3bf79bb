// Deletes trees. No link is followed, nothing on another disk that is mounted inside is touched, and folders
// that their owner has write-protected are opened up on the way: what came with a product in that state must
// be removable with it.
#pragma once

#include <optional>
#include <string>

#include "platform/Failure.h"

namespace kr::platform::copy {

// Deletes the file, link or folder with the name in an open folder. `path` names it in failures. Stops at the
// first thing that cannot be deleted.
[[nodiscard]] std::optional<Failure> removeTree(int folder, const std::string& name, const std::string& path);

// The same for an absolute path.
[[nodiscard]] std::optional<Failure> removeTree(const std::string& path);

}  // namespace kr::platform::copy
