// One function per service, each defined by the implementation for the system that is built for. The services
// are never destroyed: the install thread may still use them while the program exits. Only Services.cpp and
// tests of the real services call these; everything else asks services().
#pragma once

#include "platform/Services.h"

namespace kr::platform {

[[nodiscard]] Accessibility& systemAccessibility() noexcept;
[[nodiscard]] Alerts& systemAlerts() noexcept;
[[nodiscard]] AppleEvents& systemAppleEvents() noexcept;
[[nodiscard]] Applications& systemApplications() noexcept;
[[nodiscard]] AudioDevices& systemAudioDevices() noexcept;
[[nodiscard]] Authorization& systemAuthorization() noexcept;
[[nodiscard]] Clipboard& systemClipboard() noexcept;
[[nodiscard]] Clock& systemClock() noexcept;
[[nodiscard]] DesktopAppearance& systemDesktopAppearance() noexcept;
[[nodiscard]] DoNotDisturb& systemDoNotDisturb() noexcept;
[[nodiscard]] FileOperations& systemFileOperations() noexcept;
[[nodiscard]] FileSystems& systemFileSystems() noexcept;
[[nodiscard]] Launcher& systemLauncher() noexcept;
[[nodiscard]] LogSink& systemLog() noexcept;
[[nodiscard]] LoginItems& systemLoginItems() noexcept;
[[nodiscard]] MenuBar& systemMenuBar() noexcept;
[[nodiscard]] ProcessControl& systemProcessControl() noexcept;
[[nodiscard]] ProcessEvents& systemProcessEvents() noexcept;
[[nodiscard]] ProcessTable& systemProcessTable() noexcept;
[[nodiscard]] Program& systemProgram() noexcept;
[[nodiscard]] SecureInput& systemSecureInput() noexcept;
[[nodiscard]] StandardFolders& systemStandardFolders() noexcept;
[[nodiscard]] SystemVersion& systemSystemVersion() noexcept;
[[nodiscard]] UserInput& systemUserInput() noexcept;
[[nodiscard]] WindowOrder& systemWindowOrder() noexcept;

}  // namespace kr::platform
