// What the process object's Apple events look like, and the log lines of a "quit" event that failed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/AppleEvents.h"

namespace kr {

// An event without parameters, by process ID. It is not waited for.
[[nodiscard]] platform::AppleEvent plainEvent(std::uint32_t eventClass, std::uint32_t eventID, pid_t pid);

// The same event, waited for up to so many seconds.
[[nodiscard]] platform::AppleEvent waitingEvent(std::uint32_t eventClass, std::uint32_t eventID, pid_t pid,
                                                float seconds);

// An event with a text (UTF-8) as direct parameter, by serial number. It is not waited for.
[[nodiscard]] platform::AppleEvent textEvent(std::uint32_t eventClass, std::uint32_t eventID,
                                             platform::SerialNumber process, std::string text);

// The request to quit, by serial number.
[[nodiscard]] platform::AppleEvent quitEvent(platform::SerialNumber process);

// Sixtieths of a second, cut off to whole ones.
[[nodiscard]] std::int32_t ticks(float seconds);

// Sends an event; an error in sending is logged, one in building is not.
void sendAndLog(const platform::AppleEvent& event);

// Sends the request to quit; an error in any step is logged with the process's name.
void sendQuitEvent(platform::SerialNumber process, const std::optional<std::string>& name);

}  // namespace kr
