// Tells when the menu bar of the desktop is hidden, because an application fills the screen, and when it is
// shown again. Main thread.
#pragma once

#include <cstdint>
#include <functional>
#include <span>

namespace kr::platform {

// A kind of event as the system names it: a class of four characters and a number in it.
struct EventType {
  std::uint32_t eventClass = 0;
  std::uint32_t kind = 0;

  bool operator==(const EventType&) const = default;
};

inline constexpr EventType kMenuBarShown{'menu', 2000};
inline constexpr EventType kMenuBarHidden{'menu', 2001};

// What a handler answers so that others get the event as well.
inline constexpr std::int32_t kEventNotHandled = -9874;

class MenuBar {
 public:
  // Called out of the main thread's run loop; answers a status of the system.
  using Handler = std::function<std::int32_t(EventType event)>;

  virtual ~MenuBar() = default;

  // Calls the handler for these events from now on, for the life of the program. A menu bar that is hidden by
  // now may be told as soon as the run loop runs. False when nothing will be told. Once per program.
  [[nodiscard]] virtual bool installHandler(Handler handler, std::span<const EventType> events) = 0;
};

}  // namespace kr::platform
