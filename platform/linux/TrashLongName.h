// The Trash keeps a note beside each item, under the item's name and a suffix. That leaves no room for the
// longest names, which GIO therefore refuses; here such an item goes to the Trash under a shorter name, while
// its note restores the full one.
#pragma once

#include <optional>
#include <string>

#include "platform/Failure.h"

namespace kr::platform {

// Moves the item to the Trash of the user's home disk. Fails for an item of another disk; it stays then.
[[nodiscard]] std::optional<Failure> moveLongNameToTrash(const std::string& path);

}  // namespace kr::platform
