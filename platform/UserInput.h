// What the user's keyboard and pointing devices do. Any thread.
#pragma once

#include <chrono>
#include <optional>

namespace kr::platform {

class UserInput {
 public:
  virtual ~UserInput() = default;

  // How long the user has touched none of them; none when the system does not say.
  [[nodiscard]] virtual std::optional<std::chrono::nanoseconds> idleTime() = 0;
};

}  // namespace kr::platform
