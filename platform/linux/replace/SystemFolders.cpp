#include "platform/replace/SystemFolders.h"

#include <array>

namespace kr::platform::replace {
namespace {

constexpr std::array kFolders{
    SystemFolder{"/bin", Place::closed},
    SystemFolder{"/boot", Place::closed},
    SystemFolder{"/dev", Place::closed},
    SystemFolder{"/etc", Place::closed},
    SystemFolder{"/lib", Place::closed},
    SystemFolder{"/lib32", Place::closed},
    SystemFolder{"/lib64", Place::closed},
    SystemFolder{"/libx32", Place::closed},
    SystemFolder{"/proc", Place::closed},
    SystemFolder{"/run", Place::closed},
    SystemFolder{"/run/media", Place::openBelow},
    SystemFolder{"/sbin", Place::closed},
    SystemFolder{"/sys", Place::closed},
    SystemFolder{"/usr", Place::closed},
    SystemFolder{"/usr/GNUstep/Local/Applications", Place::open},
    SystemFolder{"/usr/GNUstep/System/Applications", Place::open},
    SystemFolder{"/usr/lib/GNUstep/Applications", Place::open},
    SystemFolder{"/usr/local", Place::openBelow},
    SystemFolder{"/usr/local/bin", Place::closed},
    SystemFolder{"/usr/local/etc", Place::closed},
    SystemFolder{"/usr/local/games", Place::closed},
    SystemFolder{"/usr/local/include", Place::closed},
    SystemFolder{"/usr/local/lib", Place::closed},
    SystemFolder{"/usr/local/lib/GNUstep/Applications", Place::open},
    SystemFolder{"/usr/local/libexec", Place::closed},
    SystemFolder{"/usr/local/sbin", Place::closed},
    SystemFolder{"/usr/local/share", Place::closed},
    SystemFolder{"/var", Place::closed},
    SystemFolder{"/var/local", Place::openBelow},
    SystemFolder{"/var/opt", Place::openBelow},
    SystemFolder{"/var/tmp", Place::open},
    // On some systems these are links into /var.
    SystemFolder{"/home", Place::openBelow},
    SystemFolder{"/media", Place::openBelow},
    SystemFolder{"/mnt", Place::openBelow},
    SystemFolder{"/opt", Place::open},
    SystemFolder{"/root", Place::closed},
    SystemFolder{"/srv", Place::openBelow},
    // Commands and settings of a user.
    SystemFolder{"/home/*/GNUstep/Defaults", Place::closed},
    SystemFolder{"/home/*/GNUstep/Library", Place::closed},
    SystemFolder{"/home/*/bin", Place::closed},
};

}  // namespace

std::span<const SystemFolder> systemFolders() noexcept {
  return kFolders;
}

}  // namespace kr::platform::replace
