// The level of the system that the program runs on. Any thread.
#pragma once

namespace kr::platform {

class SystemVersion {
 public:
  virtual ~SystemVersion() = default;

  // The version number of the application framework (1639 is that of macOS 10.14).
  [[nodiscard]] virtual double appKitVersion() = 0;
};

}  // namespace kr::platform
