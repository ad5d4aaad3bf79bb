#include "platform/MenuBar.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/SystemServices.h"
#include "platform/linux/DesktopWatch.h"
#include "platform/linux/X11Desktop.h"

namespace kr::platform {
namespace {

// There is no one menu bar here: what hides the panels of the desktop is an active window that fills the
// screen.
class FullScreenWindow final : public MenuBar {
 public:
  bool installHandler(Handler handler, std::span<const EventType> events) override {
    handler_ = std::move(handler);
    events_.assign(events.begin(), events.end());
    DesktopWatch::shared().listenToActiveWindow([this](const X11RootWatch::News& news) {
      // Window managers leave a last active window active after its end.
      if (news.active || news.activeState || news.windows) tell();
    });
    return true;
  }

 private:
  void tell() {
    const bool hidden = X11Desktop::shared().activeWindowFillsScreen();
    if (hidden == hidden_) return;
    hidden_ = hidden;
    const EventType event = hidden ? kMenuBarHidden : kMenuBarShown;
    if (std::find(events_.begin(), events_.end(), event) != events_.end()) handler_(event);
  }

  Handler handler_;
  std::vector<EventType> events_;
  bool hidden_ = false;
};

}  // namespace

MenuBar& systemMenuBar() noexcept {
  static FullScreenWindow& menuBar = *new FullScreenWindow;
  return menuBar;
}

}  // namespace kr::platform
