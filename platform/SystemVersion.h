// The level of the system that the program runs on. Any thread.
#pragma once

#include <cstdint>
#include <optional>

namespace kr::platform {

enum class VersionPart {
  major,
  minor,
  bugfix,
  packed,  // all of them as binary-coded decimals, as in 0x1068 for 10.6.8
};

class SystemVersion {
 public:
  virtual ~SystemVersion() = default;

  // None when the system does not say.
  [[nodiscard]] virtual std::optional<std::int32_t> part(VersionPart part) = 0;

  // The version number of the application framework (1639 is that of macOS 10.14).
  [[nodiscard]] virtual double appKitVersion() = 0;
};

}  // namespace kr::platform
