#include "library/utilities/RunningSystem.h"

#include <optional>
#include <string_view>

#include "platform/Format.h"
#include "platform/Log.h"
#include "platform/Services.h"
#include "platform/SystemVersion.h"

namespace kr {
namespace {

using platform::VersionPart;

std::optional<std::int32_t> part(VersionPart part) {
  return platform::services().systemVersion->part(part);
}

std::uint16_t partOrZero(VersionPart wanted, std::string_view complaint) {
  const auto value = part(wanted);
  if (!value) log(complaint);
  return static_cast<std::uint16_t>(value.value_or(0));
}

// Systems that do not tell the parts one by one have two digits for the first and one for each of the others.
ThreePartVersion fromDigits(std::uint32_t digits) {
  return {.major = static_cast<std::uint16_t>((digits >> 12 & 0xF) * 10 + (digits >> 8 & 0xF)),
          .minor = static_cast<std::uint16_t>(digits >> 4 & 0xF),
          .bugfix = static_cast<std::uint16_t>(digits & 0xF)};
}

}  // namespace

ThreePartVersion threePartVersion() {
  const auto major = part(VersionPart::major);
  if (!major) return fromDigits(hexSystemVersion());
  ThreePartVersion version{.major = static_cast<std::uint16_t>(*major)};
  version.minor = partOrZero(VersionPart::minor, "cannot get minor version number");
  version.bugfix = partOrZero(VersionPart::bugfix, "cannot get bugfix version number");
  return version;
}

std::uint32_t hexSystemVersion() {
  return static_cast<std::uint32_t>(part(VersionPart::packed).value_or(0));
}

std::string systemVersionString() {
  const ThreePartVersion version = threePartVersion();
  if (version.bugfix == 0) return formatted("%d.%d", version.major, version.minor);
  return formatted("%d.%d.%d", version.major, version.minor, version.bugfix);
}

std::uint32_t DecimalSystemVersion::value() {
  std::uint32_t number = known_.load(std::memory_order_relaxed);
  if (number != 0) return number;
  const ThreePartVersion version = threePartVersion();
  number = (version.major * 100u + version.minor) * 100u + version.bugfix;
  known_.store(number, std::memory_order_relaxed);
  return number;
}

std::uint32_t decimalSystemVersion() {
  static DecimalSystemVersion version;
  return version.value();
}

}  // namespace kr
