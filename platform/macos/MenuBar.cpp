#include "platform/MenuBar.h"

#include <Carbon/Carbon.h>

#include <utility>
#include <vector>

#include "platform/SystemServices.h"

namespace kr::platform {
namespace {

static_assert(kMenuBarShown.eventClass == kEventClassMenu && kMenuBarShown.kind == kEventMenuBarShown &&
              kMenuBarHidden.kind == kEventMenuBarHidden && kEventNotHandled == eventNotHandledErr);

MenuBar::Handler& installedHandler() {
  static auto& handler = *new MenuBar::Handler;
  return handler;
}

OSStatus handle(EventHandlerCallRef, EventRef event, void*) {
  return installedHandler()({.eventClass = GetEventClass(event), .kind = GetEventKind(event)});
}

class CarbonMenuBar final : public MenuBar {
 public:
  bool installHandler(Handler handler, std::span<const EventType> events) override {
    installedHandler() = std::move(handler);
    std::vector<EventTypeSpec> types;
    types.reserve(events.size());
    for (const EventType event : events) types.push_back({event.eventClass, event.kind});
    const EventHandlerUPP entry = NewEventHandlerUPP(handle);
    if (InstallEventHandler(GetEventDispatcherTarget(), entry, types.size(), types.data(), nullptr,
                            nullptr) == noErr) {
      return true;
    }
    DisposeEventHandlerUPP(entry);
    installedHandler() = nullptr;
    return false;
  }
};

}  // namespace

MenuBar& systemMenuBar() noexcept {
  static CarbonMenuBar menuBar;
  return menuBar;
}

}  // namespace kr::platform
