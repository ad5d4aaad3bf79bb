// The user's wish not to be disturbed by notifications, as it is set; nothing here looks at a clock. Any
// thread.
#pragma once

#include <cstdint>
#include <optional>

namespace kr::platform {

class DoNotDisturb {
 public:
  virtual ~DoNotDisturb() = default;

  // Whether the user wants no notifications until further notice.
  [[nodiscard]] virtual bool isOn() = 0;

  // The daily period without notifications.
  struct Schedule {
    std::int64_t start = 0;  // minutes after midnight, as they are set: perhaps out of the range of a day
    std::int64_t end = 0;
  };
  // None unless both ends are set.
  [[nodiscard]] virtual std::optional<Schedule> schedule() = 0;
};

}  // namespace kr::platform
