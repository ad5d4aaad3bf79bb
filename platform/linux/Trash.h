// The user's Trash, as the desktop's file managers keep it.
#pragma once

#include <optional>
#include <string>

#include "platform/Failure.h"

namespace kr::platform {

// Moves the item to the Trash of its disk, with a note of where it came from. Fails where that disk can have
// no Trash; the item stays then. Any thread.
[[nodiscard]] std::optional<Failure> moveToTrash(const std::string& path);

}  // namespace kr::platform
