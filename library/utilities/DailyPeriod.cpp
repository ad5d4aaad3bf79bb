#include "library/utilities/DailyPeriod.h"

namespace kr {
namespace {

constexpr std::int64_t kMinutesPerDay = 1440;

std::int64_t minuteOfDay(std::int64_t minutes) noexcept {
  return (minutes < 0 ? minutes + kMinutesPerDay : minutes) % kMinutesPerDay;
}

}  // namespace

bool isInDailyPeriod(int minute, std::int64_t start, std::int64_t end) noexcept {
  const std::int64_t from = minuteOfDay(start);
  const std::int64_t to = minuteOfDay(end);
  if (from < to) return from <= minute && minute < to;
  return to < from && (minute >= from || minute < to);
}

}  // namespace kr
