// A period that comes back every day.
#pragma once

#include <cstdint>

namespace kr {

// Whether a minute of the day (0 to 1439) lies in the period from `start` to before `end`, both in minutes
// after midnight: a period may pass midnight, and is empty when both are the same time. A negative
// time, down to -1440, is one of the day before.
[[nodiscard]] bool isInDailyPeriod(int minute, std::int64_t start, std::int64_t end) noexcept;

}  // namespace kr
