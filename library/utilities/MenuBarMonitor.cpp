#include "library/utilities/MenuBarMonitor.h"

#include <array>

#include "platform/Log.h"
#include "platform/Services.h"

namespace kr {
namespace {

constexpr std::array<platform::EventType, 2> menuBarEventsWanted{platform::kMenuBarShown,
                                                                 platform::kMenuBarHidden};

}  // namespace

MenuBarMonitor& MenuBarMonitor::shared() {
  static MenuBarMonitor monitor;
  return monitor;
}

void MenuBarMonitor::install() {
  if (isInstalled_) return;
  isInstalled_ = true;
  const auto handler = [this](platform::EventType event) { return handle(event); };
  if (platform::services().menuBar->installHandler(handler, menuBarEventsWanted)) return;
  log("could not install menu bar visibility event handl)");
}

std::int32_t MenuBarMonitor::handle(platform::EventType event) {
  if (event == platform::kMenuBarHidden) menuBarIsShown_ = 1;
  if (event == platform::kMenuBarShown) menuBarIsShown_ = 0;
  return platform::kEventNotHandled;
}

}  // namespace kr
