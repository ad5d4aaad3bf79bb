#include "platform/Services.h"

#include "platform/SystemServices.h"

namespace kr::platform {
namespace {

Services& current() noexcept {
  static Services set = systemServices();
  return set;
}

}  // namespace

const Services& services() noexcept {
  return current();
}

Services systemServices() noexcept {
  return {.accessibility = &systemAccessibility(),
          .alerts = &systemAlerts(),
          .appleEvents = &systemAppleEvents(),
          .applications = &systemApplications(),
          .audioDevices = &systemAudioDevices(),
          .authorization = &systemAuthorization(),
          .clipboard = &systemClipboard(),
          .clock = &systemClock(),
          .desktopAppearance = &systemDesktopAppearance(),
          .doNotDisturb = &systemDoNotDisturb(),
          .files = &systemFileOperations(),
          .fileSystems = &systemFileSystems(),
          .launcher = &systemLauncher(),
          .log = &systemLog(),
          .loginItems = &systemLoginItems(),
          .menuBar = &systemMenuBar(),
          .processControl = &systemProcessControl(),
          .processEvents = &systemProcessEvents(),
          .processes = &systemProcessTable(),
          .program = &systemProgram(),
          .secureInput = &systemSecureInput(),
          .folders = &systemStandardFolders(),
          .systemVersion = &systemSystemVersion(),
          .userInput = &systemUserInput(),
          .windowOrder = &systemWindowOrder()};
}

ScopedServices::ScopedServices(const Services& replacement) noexcept : previous_(current()) {
  current() = replacement;
}

ScopedServices::~ScopedServices() {
  current() = previous_;
}

}  // namespace kr::platform
