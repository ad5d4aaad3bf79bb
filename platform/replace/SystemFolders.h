// Folders whose contents the system acts upon: programs, libraries, settings, services. Nothing that comes
// with a product has a place there.
#pragma once

#include <span>

namespace kr::platform::replace {

struct SystemFolder {
  const char* path;
  // True for a folder of the system, with all below it; false for one below such a folder that is open to
  // products again, with all below it.
  bool isClosed;
};

// Not every folder exists on every machine.
[[nodiscard]] std::span<const SystemFolder> systemFolders() noexcept;

}  // namespace kr::platform::replace
