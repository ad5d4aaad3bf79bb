// The event by which an installed product tells the installer that it has started.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kr {

inline constexpr std::uint32_t kDoneEventClass = 0x53696E53;  // 'SinS'
inline constexpr std::uint32_t kDoneEventID = 0x446F6E65;     // 'Done'

// Logs an event that came with this text (none: without a text) and answers whether it confirms the
// installation that goes by this tag (none: no installation has begun). Both are bytes as they came; case and
// spaces count. Any thread.
[[nodiscard]] bool confirmsInstallation(const std::optional<std::string>& text,
                                        const std::optional<std::string>& tag);

}  // namespace kr
