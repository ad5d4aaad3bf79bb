#import "platform/cocoa/Alerts.h"

#include "platform/SystemServices.h"
#import "platform/cocoa/Bridging.h"

namespace kr::platform {
namespace {

static_assert(kFirstAlertButton == NSAlertFirstButtonReturn);

class AppKitAlerts final : public Alerts {
 public:
  void beginSheet(const Alert& alert, NSWindow* window, Ended ended) override {
    NSAlert* sheet = [[[NSAlert alloc] init] autorelease];
    for (const std::string& title : alert.buttons) [sheet addButtonWithTitle:toNSString(title)];
    [sheet setAlertStyle:NSAlertStyleInformational];
    [sheet setMessageText:toNSString(alert.message)];
    [sheet setInformativeText:toNSString(alert.informative)];
    if (NSImage* icon = [NSImage imageNamed:toNSString(alert.icon)]) [sheet setIcon:icon];
    [sheet beginSheetModalForWindow:window
                  completionHandler:^(NSModalResponse code) {
                    ended(sheet, code);
                  }];
  }
};

}  // namespace

Alerts& systemAlerts() noexcept {
  static AppKitAlerts alerts;
  return alerts;
}

}  // namespace kr::platform
