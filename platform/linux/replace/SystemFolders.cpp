#include "platform/replace/SystemFolders.h"

#include <array>

namespace kr::platform::replace {
namespace {

constexpr std::array kFolders{
    SystemFolder{"/bin", true},
    SystemFolder{"/boot", true},
    SystemFolder{"/dev", true},
    SystemFolder{"/etc", true},
    SystemFolder{"/lib", true},
    SystemFolder{"/lib32", true},
    SystemFolder{"/lib64", true},
    SystemFolder{"/libx32", true},
    SystemFolder{"/proc", true},
    SystemFolder{"/run", true},
    SystemFolder{"/run/media", false},
    SystemFolder{"/sbin", true},
    SystemFolder{"/sys", true},
    SystemFolder{"/usr", true},
    SystemFolder{"/usr/GNUstep/Local/Applications", false},
    SystemFolder{"/usr/GNUstep/System/Applications", false},
    SystemFolder{"/usr/lib/GNUstep/Applications", false},
    SystemFolder{"/usr/local", false},
    SystemFolder{"/usr/local/bin", true},
    SystemFolder{"/usr/local/etc", true},
    SystemFolder{"/usr/local/games", true},
    SystemFolder{"/usr/local/include", true},
    SystemFolder{"/usr/local/lib", true},
    SystemFolder{"/usr/local/lib/GNUstep/Applications", false},
    SystemFolder{"/usr/local/libexec", true},
    SystemFolder{"/usr/local/sbin", true},
    SystemFolder{"/usr/local/share", true},
    SystemFolder{"/var", true},
    SystemFolder{"/var/local", false},
    SystemFolder{"/var/opt", false},
    SystemFolder{"/var/tmp", false},
    // On some systems these are links into /var.
    SystemFolder{"/home", false},
    SystemFolder{"/media", false},
    SystemFolder{"/mnt", false},
    SystemFolder{"/opt", false},
    SystemFolder{"/root", false},
    SystemFolder{"/srv", false},
};

}  // namespace

std::span<const SystemFolder> systemFolders() noexcept {
  return kFolders;
}

}  // namespace kr::platform::replace
