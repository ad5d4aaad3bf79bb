#include "platform/SystemVersion.h"

#import <AppKit/AppKit.h>

#include "platform/SystemServices.h"

namespace kr::platform {
namespace {

class LoadedAppKit final : public SystemVersion {
 public:
  double appKitVersion() override { return NSAppKitVersionNumber; }
};

}  // namespace

SystemVersion& systemSystemVersion() noexcept {
  static LoadedAppKit version;
  return version;
}

}  // namespace kr::platform
