#include "platform/DoNotDisturb.h"

#include "platform/SystemServices.h"
#import "platform/cocoa/DoNotDisturbDefaults.h"

namespace kr::platform {
namespace {

NSUserDefaults* newDefaults() {
  return [[NSUserDefaults alloc] initWithSuiteName:kNotificationDefaults];
}

class NotificationCenterSettings final : public DoNotDisturb {
 public:
  bool isOn() override {
    @autoreleasepool {
      NSUserDefaults* defaults = newDefaults();
      const bool result = [defaults boolForKey:@"doNotDisturb"];
      [defaults release];
      return result;
    }
  }

  std::optional<Schedule> schedule() override {
    @autoreleasepool {
      NSUserDefaults* defaults = newDefaults();
      const auto result =
          scheduleFrom([defaults objectForKey:@"dndStart"], [defaults objectForKey:@"dndEnd"]);
      [defaults release];
      return result;
    }
  }
};

}  // namespace

DoNotDisturb& systemDoNotDisturb() noexcept {
  static NotificationCenterSettings& settings = *new NotificationCenterSettings;
  return settings;
}

}  // namespace kr::platform
