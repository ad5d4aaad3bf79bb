// Which program has started the running one. Any thread.
#pragma once

#include <optional>
#include <string>

namespace kr::platform {

// The signature of what starts the user's login items.
inline constexpr const char* kLoginItemLauncher = "lgnw";

class Launcher {
 public:
  virtual ~Launcher() = default;

  // The launcher's four-character signature, UTF-8; none where the system does not know of a launcher, or
  // where that has ended.
  [[nodiscard]] virtual std::optional<std::string> signature() = 0;
};

}  // namespace kr::platform
