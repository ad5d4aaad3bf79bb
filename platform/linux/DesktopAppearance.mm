#include "platform/DesktopAppearance.h"

#include "platform/SystemServices.h"
#include "platform/cocoa/InterfaceStyle.h"

namespace kr::platform {
namespace {

class DefaultsOfTheUser final : public DesktopAppearance {
 public:
  bool isDark() override { return interfaceStyleIsDark(); }
};

}  // namespace

DesktopAppearance& systemDesktopAppearance() noexcept {
  static DefaultsOfTheUser& appearance = *new DefaultsOfTheUser;
  return appearance;
}

}  // namespace kr::platform
