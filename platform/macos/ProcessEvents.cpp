#include "platform/ProcessEvents.h"

#include <Carbon/Carbon.h>

#include <array>
#include <utility>

#include "platform/Log.h"
#include "platform/SystemServices.h"

namespace kr::platform {
namespace {

constexpr std::array<EventTypeSpec, 3> kWatched{{{kEventClassApplication, kEventAppLaunched},
                                                 {kEventClassApplication, kEventAppTerminated},
                                                 {kEventClassApplication, kEventAppFrontSwitched}}};
static_assert(kEventAppLaunched == kApplicationLaunched && kEventAppTerminated == kApplicationEnded &&
              kEventAppFrontSwitched == kFrontApplicationChanged);

OSStatus handle(EventHandlerCallRef, EventRef event, void* handler) {
  (*static_cast<ProcessEvents::Handler*>(handler))(GetEventKind(event));
  return noErr;
}

// The system tells of every application of the session, whether or not the program knows it.
class CarbonEvents final : public ProcessEvents {
 public:
  void start(Handler handler) override {
    handler_ = std::move(handler);
    // The reference is not kept: the handler lives as long as the program.
    const OSStatus status = InstallEventHandler(GetApplicationEventTarget(), NewEventHandlerUPP(handle),
                                                kWatched.size(), kWatched.data(), &handler_, nullptr);
    if (status != noErr) log("cannot watch launches and ends of applications: %d", status);
  }

  void learn(SerialNumber) override {}

 private:
  Handler handler_;
};

}  // namespace

ProcessEvents& systemProcessEvents() noexcept {
  static CarbonEvents& events = *new CarbonEvents;
  return events;
}

}  // namespace kr::platform
