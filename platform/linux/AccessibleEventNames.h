// Names of accessibility events: "object:state-changed:focused" says what, of which kind, and in which
// detail. On the bus the first part is an interface, the second a member, the third an argument. Text only.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kr::platform {

struct AccessibleEventName {
  std::string interface;  // "org.a11y.atspi.Event.Object"
  std::string member;     // "StateChanged"; empty for every one of the interface
  std::string detail;     // "focused"; empty for every one of the member

  friend bool operator==(const AccessibleEventName&, const AccessibleEventName&) = default;

  // Whether an event of the bus is meant.
  [[nodiscard]] bool covers(const AccessibleEventName& event) const;
};

// None for what is no such name. Parts after the first may be missing, or written as on the bus
// ("StateChanged").
[[nodiscard]] std::optional<AccessibleEventName> parseEventName(std::string_view text);

// The name of an event of the bus; empty where the interface is none of accessibility events.
[[nodiscard]] std::string eventNameText(const AccessibleEventName& event);

}  // namespace kr::platform
