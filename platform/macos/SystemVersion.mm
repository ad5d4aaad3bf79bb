#include "platform/SystemVersion.h"

#import <AppKit/AppKit.h>
#include <CoreServices/CoreServices.h>

#include "platform/SystemServices.h"

namespace kr::platform {
namespace {

OSType selector(VersionPart part) {
  switch (part) {
    case VersionPart::major:
      return gestaltSystemVersionMajor;
    case VersionPart::minor:
      return gestaltSystemVersionMinor;
    case VersionPart::bugfix:
      return gestaltSystemVersionBugFix;
    case VersionPart::packed:
      return gestaltSystemVersion;
  }
}

class LoadedSystem final : public SystemVersion {
 public:
  std::optional<std::int32_t> part(VersionPart part) override {
    SInt32 value = 0;
    if (Gestalt(selector(part), &value) != noErr) return std::nullopt;
    return value;
  }

  double appKitVersion() override { return NSAppKitVersionNumber; }
};

}  // namespace

SystemVersion& systemSystemVersion() noexcept {
  static LoadedSystem version;
  return version;
}

}  // namespace kr::platform
