// Serial numbers as the Process Manager writes them, and where a process lies as its File Manager reference.
#pragma once

#include <ApplicationServices/ApplicationServices.h>

#include <optional>

#include "platform/SerialNumber.h"

namespace kr::macos {

[[nodiscard]] inline ProcessSerialNumber processSerialNumber(platform::SerialNumber process) noexcept {
  return {process.high, process.low};
}

[[nodiscard]] inline platform::SerialNumber serialNumber(const ProcessSerialNumber& process) noexcept {
  return {process.highLongOfPSN, process.lowLongOfPSN};
}

// The bundle of the process, or its executable where it has no bundle; none for a process that has ended.
[[nodiscard]] inline std::optional<FSRef> locationOf(platform::SerialNumber process) noexcept {
  const ProcessSerialNumber number = processSerialNumber(process);
  FSRef location{};
  if (GetProcessBundleLocation(&number, &location) != noErr) return std::nullopt;
  return location;
}

}  // namespace kr::macos
