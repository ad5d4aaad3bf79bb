// How Apple events travel over the session bus. An application that takes events owns one well-known name,
// made of its process's serial number so that no later process with the same ID is taken for it, and has one
// object with one interface:
//
//   method Send(in u class, in u id, in as directTexts)
//
// The direct object is a text when the list holds exactly one. A receiver takes a plain text (s) in the place
// of the list as well; any other value there, or none, is a direct object that is no text. A reply without
// values says that the event was handled; an error reply that it was not.
#pragma once

#include <string>

#include "platform/SerialNumber.h"

namespace kr::platform::applebus {

inline constexpr const char* kObjectPath = "/org/velmora/AppleEvents";
inline constexpr const char* kInterface = "org.velmora.AppleEvents";
inline constexpr const char* kMethod = "Send";
inline constexpr const char* kArgumentTypes = "(uuas)";

// The bus name of a process: "org.velmora.AppleEvents.p" PID "_" start time.
[[nodiscard]] inline std::string busName(SerialNumber process) {
  return "org.velmora.AppleEvents.p" + std::to_string(process.low) + "_" + std::to_string(process.high);
}

}  // namespace kr::platform::applebus
