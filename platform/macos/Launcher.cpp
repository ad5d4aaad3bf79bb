#include "platform/Launcher.h"

#include <ApplicationServices/ApplicationServices.h>

#include "platform/SystemServices.h"
#include "platform/macos/CFOwner.h"
#include "platform/macos/CFText.h"

namespace kr::platform {
namespace {

using macos::CFOwner;

constexpr UInt32 kAllInformation = 0xFFFFFFFF;

class LaunchingProcess final : public Launcher {
 public:
  std::optional<std::string> signature() override {
    ProcessSerialNumber own{};
    if (GetCurrentProcess(&own) != noErr) return std::nullopt;
    ProcessInfoRec information{};
    information.processInfoLength = sizeof information;
    if (GetProcessInformation(&own, &information) != noErr) return std::nullopt;
    const CFOwner<CFDictionaryRef> launcher(
        ProcessInformationCopyDictionary(&information.processLauncher, kAllInformation));
    if (!launcher) return std::nullopt;
    const void* creator = CFDictionaryGetValue(launcher.get(), CFSTR("FileCreator"));
    if (creator == nullptr || CFGetTypeID(creator) != CFStringGetTypeID()) return std::nullopt;
    return macos::text(static_cast<CFStringRef>(creator));
  }
};

}  // namespace

Launcher& systemLauncher() noexcept {
  static LaunchingProcess launcher;
  return launcher;
}

}  // namespace kr::platform
