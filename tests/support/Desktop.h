// A desktop of the test's own: an X server without a screen, and with it a window manager and a session bus
// where they are asked for, and the accessibility bus. For its lifetime DISPLAY and DBUS_SESSION_BUS_ADDRESS
// lead there; afterwards they are what they were. A part that was not asked for is not there: the variable is
// unset. Neither is the system's message bus: nothing here asks the machine's user for a password.
//
//   Desktop desktop({.windowManager = true, .bus = true});
#pragma once

#include <optional>
#include <string>

#include "tests/support/Child.h"
#include "tests/support/ScratchFolder.h"

namespace kr::testing {

// Gives an environment variable another value, or none, until the end of the scope.
class ScopedVariable {
 public:
  ScopedVariable(std::string name, const std::optional<std::string>& value);
  ~ScopedVariable();
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  std::string name_;
  std::optional<std::string> previous_;
};

struct DesktopParts {
  bool display = true;
  bool windowManager = false;  // openbox; needs the display
  bool bus = false;            // dbus-daemon, with nobody else on it
  bool accessibility = false;  // at-spi2-core; needs the bus
};

class Desktop {
 public:
  // Throws std::runtime_error where a part does not start.
  explicit Desktop(DesktopParts parts = {});

  // ":7"; empty without a display.
  [[nodiscard]] const std::string& display() const { return display_; }
  [[nodiscard]] const std::string& busAddress() const { return busAddress_; }

  // Ends one part early, as if it had crashed.
  void stopDisplay() { server_.stop(); }
  void stopBus() { bus_.stop(); }
  void stopAccessibility() { accessibility_.stop(); }

  // Stops a server's process in its tracks, for one, and lets it go on.
  void signalDisplay(int number) const { server_.signal(number); }
  void signalBus(int number) const { bus_.signal(number); }
  [[nodiscard]] pid_t displayProcess() const { return server_.pid(); }

 private:
  void startDisplay();
  void startWindowManager();
  void startBus();
  void startAccessibility();

  ScratchFolder folder_;
  std::string display_;
  std::string busAddress_;
  std::optional<ScopedVariable> displayVariable_;
  std::optional<ScopedVariable> busVariable_;
  std::optional<ScopedVariable> runtimeVariable_;
  std::optional<ScopedVariable> systemBusVariable_;
  std::optional<ScopedVariable> accessibilityVariable_;
  // Ended in the opposite order, so that nothing outlives the server it talks to.
  Child bus_;
  Child server_;
  Child windowManager_;
  Child accessibility_;
};

}  // namespace kr::testing
