#include "platform/LoginItems.h"

#include <CoreServices/CoreServices.h>

#include "platform/SystemServices.h"
#include "platform/macos/CFOwner.h"
#include "platform/macos/CFText.h"

namespace kr::platform {
namespace {

using macos::CFOwner;

class SessionLoginItems final : public LoginItems {
 public:
  std::optional<std::vector<std::string>> paths() override {
    const CFOwner<LSSharedFileListRef> list(
        LSSharedFileListCreate(nullptr, kLSSharedFileListSessionLoginItems, nullptr));
    if (!list) return std::nullopt;
    UInt32 seed = 0;
    const CFOwner<CFArrayRef> snapshot(LSSharedFileListCopySnapshot(list.get(), &seed));
    if (!snapshot) return std::nullopt;

    std::vector<std::string> paths;
    for (CFIndex index = 0; index < CFArrayGetCount(snapshot.get()); ++index) {
      const auto item = static_cast<LSSharedFileListItemRef>(
          const_cast<void*>(CFArrayGetValueAtIndex(snapshot.get(), index)));
      // Without the flag an item on a server that is not there would ask the user for a password.
      CFOwner<CFURLRef> location;
      if (LSSharedFileListItemResolve(item, kLSSharedFileListNoUserInteraction, location.receive(),
                                      nullptr) != noErr) {
        continue;
      }
      if (std::optional<std::string> path = macos::path(location.get())) paths.push_back(*std::move(path));
    }
    return paths;
  }
};

}  // namespace

LoginItems& systemLoginItems() noexcept {
  static SessionLoginItems items;
  return items;
}

}  // namespace kr::platform
