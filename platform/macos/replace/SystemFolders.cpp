#include "platform/replace/SystemFolders.h"

#include <array>

namespace kr::platform::replace {
namespace {

constexpr std::array kFolders{
    SystemFolder{"/Library", true},
    SystemFolder{"/Library/Application Support", false},
    SystemFolder{"/Library/Input Methods", false},
    SystemFolder{"/Network", true},
    SystemFolder{"/System", true},
    // Where the system shows the volume of the users' data once more.
    SystemFolder{"/System/Volumes/Data", false},
    SystemFolder{"/bin", true},
    SystemFolder{"/cores", true},
    SystemFolder{"/dev", true},
    SystemFolder{"/private", true},
    SystemFolder{"/sbin", true},
    SystemFolder{"/usr", true},
    SystemFolder{"/usr/local", false},
    SystemFolder{"/usr/local/bin", true},
    SystemFolder{"/usr/local/etc", true},
    SystemFolder{"/usr/local/include", true},
    SystemFolder{"/usr/local/lib", true},
    SystemFolder{"/usr/local/libexec", true},
    SystemFolder{"/usr/local/sbin", true},
    SystemFolder{"/usr/local/share", true},
};

}  // namespace

std::span<const SystemFolder> systemFolders() noexcept {
  return kFolders;
}

}  // namespace kr::platform::replace
