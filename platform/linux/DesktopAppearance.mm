#include "platform/DesktopAppearance.h"

#import <Foundation/Foundation.h>

#include <atomic>

#include "platform/Clock.h"
#include "platform/SystemServices.h"
#include "platform/cocoa/InterfaceStyle.h"
#include "platform/linux/DesktopColorScheme.h"

namespace kr::platform {
namespace {

// GNUstep looks at what other programs have written when it is told to only. That takes as long as ten
// readings, and colours are asked for by the hundred while a window draws.
constexpr double kFreshSeconds = 0.1;

// The desktop's own setting, and where it has none, the user's default.
class SettingsOfTheDesktop final : public DesktopAppearance {
 public:
  bool isDark() override {
    if (const std::optional<bool> dark = desktopPrefersDark()) return *dark;
    const double now = systemClock().monotonicSeconds();
    if (now - lastLook_.exchange(now) > kFreshSeconds) lookAtTheDisk();
    return interfaceStyleIsDark();
  }

 private:
  static void lookAtTheDisk() {
    @autoreleasepool {
      [[NSUserDefaults standardUserDefaults] synchronize];
    }
  }

  std::atomic<double> lastLook_{-kFreshSeconds};
};

}  // namespace

DesktopAppearance& systemDesktopAppearance() noexcept {
  static SettingsOfTheDesktop& appearance = *new SettingsOfTheDesktop;
  return appearance;
}

}  // namespace kr::platform
