#include "samples/done/SendDone.h"

#include "platform/AppleEvents.h"
#include "platform/ProcessTable.h"
#include "platform/Services.h"

namespace kr {
namespace {

using platform::AppleEvent;

constexpr std::uint32_t code(std::string_view characters) {
  std::uint32_t value = 0;
  for (const char character : characters) value = value << 8 | static_cast<unsigned char>(character);
  return value;
}

// What the installer is built with.
constexpr std::string_view kSignature = KR_INSTALLER_SIGNATURE;
static_assert(kSignature.size() == 4);
constexpr std::uint32_t kInstallerSignature = code(kSignature);
constexpr std::uint32_t kDoneEventClass = code("SinS");
constexpr std::uint32_t kDoneEventID = code("Done");

// No reply, never interact.
constexpr std::int32_t kSendMode = 0x11;

bool send(std::variant<pid_t, platform::SerialNumber> installer, const std::string& tag) {
  const AppleEvent event{.eventClass = kDoneEventClass,
                         .eventID = kDoneEventID,
                         .target = installer,
                         .directText = tag,
                         .textIsAlone = true,
                         .sendMode = kSendMode};
  return !platform::services().appleEvents->send(event);
}

}  // namespace

std::string installationTag(std::string_view productName, std::string_view version) {
  return std::string(productName).append(" ").append(version);
}

std::size_t sendDone(const std::string& tag) {
  platform::ProcessTable& table = *platform::services().processes;
  std::size_t taken = 0;
  for (const platform::SerialNumber process : table.all()) {
    const auto record = table.record(process);
    if (record && record->signature == kInstallerSignature && send(process, tag)) ++taken;
  }
  return taken;
}

bool sendDoneTo(pid_t installer, const std::string& tag) {
  return send(installer, tag);
}

}  // namespace kr
