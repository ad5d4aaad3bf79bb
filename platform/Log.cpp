#include "platform/Log.h"

#include "platform/Services.h"

namespace kr::platform {

void logLine(std::string_view text) noexcept {
  services().log->line(singleLine(text));
}

}  // namespace kr::platform
