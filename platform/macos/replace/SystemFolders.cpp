#include "platform/replace/SystemFolders.h"

#include <array>

namespace kr::platform::replace {
namespace {

constexpr std::array kFolders{
    SystemFolder{"/Library", Place::closed},
    SystemFolder{"/Library/Application Support", Place::openBelow},
    SystemFolder{"/Library/Input Methods", Place::open},
    SystemFolder{"/Network", Place::closed},
    SystemFolder{"/System", Place::closed},
    // Where the system shows the volume of the users' data once more.
    SystemFolder{"/System/Volumes/Data", Place::openBelow},
    SystemFolder{"/Users", Place::openBelow},
    SystemFolder{"/Volumes", Place::openBelow},
    SystemFolder{"/bin", Place::closed},
    SystemFolder{"/cores", Place::closed},
    SystemFolder{"/dev", Place::closed},
    SystemFolder{"/private", Place::closed},
    SystemFolder{"/sbin", Place::closed},
    SystemFolder{"/usr", Place::closed},
    SystemFolder{"/usr/local", Place::openBelow},
    SystemFolder{"/usr/local/bin", Place::closed},
    SystemFolder{"/usr/local/etc", Place::closed},
    SystemFolder{"/usr/local/include", Place::closed},
    SystemFolder{"/usr/local/lib", Place::closed},
    SystemFolder{"/usr/local/libexec", Place::closed},
    SystemFolder{"/usr/local/sbin", Place::closed},
    SystemFolder{"/usr/local/share", Place::closed},
    // Settings and services of a user.
    SystemFolder{"/Users/*/Library", Place::closed},
};

}  // namespace

std::span<const SystemFolder> systemFolders() noexcept {
  return kFolders;
}

}  // namespace kr::platform::replace
