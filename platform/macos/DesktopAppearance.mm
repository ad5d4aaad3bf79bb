#include "platform/DesktopAppearance.h"

#include "platform/SystemServices.h"
#include "platform/cocoa/InterfaceStyle.h"

namespace kr::platform {
namespace {

class SystemSettings final : public DesktopAppearance {
 public:
  bool isDark() override { return interfaceStyleIsDark(); }
};

}  // namespace

DesktopAppearance& systemDesktopAppearance() noexcept {
  static SystemSettings& appearance = *new SystemSettings;
  return appearance;
}

}  // namespace kr::platform
