// Sends Apple events to other applications. On macOS these are the system's own; elsewhere the same class, ID
// and direct object travel over the desktop's message bus. Any thread; a send that waits for its reply blocks
// its caller.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "platform/SerialNumber.h"

namespace kr::platform {

// Send modes are the bits of the Apple Event Manager: the two low bits say whether a reply is waited for (3)
// or not wanted (1), the others are passed on to systems that know them.
inline constexpr std::int32_t kSendWaitsForReply = 0x0003;

struct AppleEvent {
  std::uint32_t eventClass = 0;
  std::uint32_t eventID = 0;
  std::variant<pid_t, SerialNumber> target;
  std::optional<std::string> directText;  // UTF-8; sent as a list that holds one text ...
  bool textIsAlone = false;               // ... or as the text by itself
  std::int32_t sendMode = 0;
  std::int16_t sendPriority = 0;
  std::int32_t timeoutTicks = 0;  // sixtieths of a second; -1 is the system's default
};

// Which step of sending failed, and the system's status (never 0).
struct AppleEventError {
  enum class Step { address, build, send };
  Step step;
  std::int32_t status;
};

class AppleEvents {
 public:
  virtual ~AppleEvents() = default;

  [[nodiscard]] virtual std::optional<AppleEventError> send(const AppleEvent& event) = 0;
};

}  // namespace kr::platform
