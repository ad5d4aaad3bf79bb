// How a product tells the installer that it has started. The installer launches what it has just installed
// and, when the product confirms with this event, knows that the installation has worked.
//
//   kr::sendDone(kr::installationTag("Velmora Notes", "1.0"));   // once, when the product has started
//
// Whom it is for. The event goes to every running application with the signature of the installer, the
// build's KR_SIGNATURE ('VmIn'): the product is not told which of them has launched it, and an installer
// ignores what does not name its own installation. With none running, nothing happens, so a product sends it
// at every start.
//
// What it says. Class 'SinS', ID 'Done', and as the direct object the installation tag: the product's name, a
// space, its version. Both must be what the installer was started with ("-productName", "-version"), to the
// letter; these are best read from the product's own information dictionary on either side. An installer that
// was started without "-version" takes no confirmation.
//
// How it travels. On macOS by the system's own Apple events, as a text in UTF-8. Since 10.14 the system
// asks the user whether the product may send events. The product's information dictionary must have a text
// for that, "NSAppleEventsUsageDescription", and a product with the hardened runtime must be signed with the
// entitlement "com.apple.security.automation.apple-events" (notes/Notes.entitlements); without them nothing
// is sent. On Linux over the session bus (platform/linux/AppleEventBus.h), where a program in any language
// can send it to the names that begin with "org.velmora.AppleEvents.p".
//
// Any thread. No reply is waited for: the calls take milliseconds, and at most a few seconds when the session
// bus hangs. They need the shared library (kr_platform) and nothing else; the caller may be plain C++.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace kr {

// Name and version as UTF-8, as the installer puts them together.
[[nodiscard]] std::string installationTag(std::string_view productName, std::string_view version);

// Sends the event with the tag to every running installer; answers how many there were that took it. On macOS
// and Linux alike that says that it was delivered, not that it was the installation they were waiting for.
std::size_t sendDone(const std::string& tag);

// Sends it to the one process; whether it was delivered.
bool sendDoneTo(pid_t installer, const std::string& tag);

}  // namespace kr
