#include "platform/testing/RecordingLog.h"

namespace kr::platform::testing {

void RecordingLog::line(std::string_view text) noexcept {
  const std::lock_guard lock(mutex_);
  lines_.emplace_back(text);
}

std::vector<std::string> RecordingLog::lines() const {
  const std::lock_guard lock(mutex_);
  return lines_;
}

}  // namespace kr::platform::testing
