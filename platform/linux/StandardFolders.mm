#include "platform/StandardFolders.h"

#import <Foundation/Foundation.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/Paths.h"
#include "platform/SystemServices.h"
#import "platform/cocoa/Bridging.h"

namespace kr::platform {
namespace {

std::optional<std::string> lastFolder(NSSearchPathDomainMask domain) {
  @autoreleasepool {
    return toOptionalBytes(
        [NSSearchPathForDirectoriesInDomains(NSApplicationDirectory, domain, YES) lastObject]);
  }
}

// Foundation takes the home folder from the user database alone; the rest of the desktop, the Trash and the
// autostart entries among it, follows HOME first.
class DesktopFolders final : public StandardFolders {
 public:
  std::string home() override {
    if (const char* path = std::getenv("HOME"); path != nullptr && *path == '/') {
      return std::string(paths::withoutTrailingSlashes(path));
    }
    return databaseHome();
  }

  std::optional<std::string> localApplications() override { return lastFolder(NSLocalDomainMask); }

  std::optional<std::string> userApplications() override {
    std::optional<std::string> folder = lastFolder(NSUserDomainMask);
    const std::string registered = databaseHome();
    if (folder && paths::isSameOrInside(*folder, registered)) {
      folder = paths::joined(home(), folder->substr(registered.size()));
    }
    return folder;
  }

  // File managers here show file names as they are.
  std::string displayName(const std::string& path) override {
    return std::string(paths::lastComponent(path));
  }

 private:
  static std::string databaseHome() {
    const passwd* entry = ::getpwuid(::getuid());
    return entry != nullptr && entry->pw_dir != nullptr ? entry->pw_dir : "/";
  }
};

}  // namespace

StandardFolders& systemStandardFolders() noexcept {
  static DesktopFolders& folders = *new DesktopFolders;
  return folders;
}

}  // namespace kr::platform
