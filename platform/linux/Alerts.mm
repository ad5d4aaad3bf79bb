#import "platform/cocoa/Alerts.h"

#include <utility>

#include "platform/SystemServices.h"
#import "platform/gnustep/AlertPanel.h"

namespace kr::platform {
namespace {

class PanelAlerts final : public Alerts {
 public:
  void beginSheet(const Alert& alert, NSWindow* window, Ended ended) override {
    KRAlertPanel* panel = [[[KRAlertPanel alloc] initWithAlert:alert] autorelease];
    [panel beginSheetForWindow:window ended:std::move(ended)];
  }
};

}  // namespace

Alerts& systemAlerts() noexcept {
  static PanelAlerts& alerts = *new PanelAlerts;
  return alerts;
}

}  // namespace kr::platform
