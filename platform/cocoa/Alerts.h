// Alerts that belong to a window. Main thread.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>
#include <string>
#include <vector>

namespace kr::platform {

// In the style that informs. Texts are shown as they are, broken into lines.
struct Alert {
  std::string message;
  std::string informative;
  std::vector<std::string> buttons;  // the first is the default button
  std::string icon;                  // the name of an image of the system or of the application
};

// What the first button answers; each further button answers one more.
inline constexpr NSInteger kFirstAlertButton = 1000;

class Alerts {
 public:
  virtual ~Alerts() = default;

  // Gets the alert, an object of the system, and what the button that was pressed answers.
  using Ended = std::function<void(id alert, NSInteger code)>;

  // Shows the alert as a sheet on the window and returns. The window is inert until a button is pressed;
  // `ended` is called then, once, from the run loop.
  virtual void beginSheet(const Alert& alert, NSWindow* window, Ended ended) = 0;
};

}  // namespace kr::platform
