// The applications that start with the user's session. Any thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kr::platform {

class LoginItems {
 public:
  virtual ~LoginItems() = default;

  // Paths of the login items that can be resolved, in the system's order; none when the list cannot be had.
  [[nodiscard]] virtual std::optional<std::vector<std::string>> paths() = 0;
};

}  // namespace kr::platform
