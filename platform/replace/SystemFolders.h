// Folders whose contents the system, or a user's session, acts upon: programs, libraries, settings, services,
// homes. Nothing that comes with a product has a place there.
#pragma once

#include <span>

namespace kr::platform::replace {

enum class Place {
  closed,     // the folder with all below it
  openBelow,  // no product lies directly in it, as what lies there is not a product's; below it they may
  open,       // the folder with all below it, in a folder that is not
};

struct SystemFolder {
  const char* path;  // a component "*" stands for each folder that is there
  Place place;
};

// Not every folder exists on every machine.
[[nodiscard]] std::span<const SystemFolder> systemFolders() noexcept;

}  // namespace kr::platform::replace
