// What happens in the user interface of another application, as the desktop's accessibility service tells it:
// a window that opens, a control that gets the focus. Main thread.
#pragma once

#include <sys/types.h>

#include <functional>
#include <memory>
#include <string>

namespace kr::platform {

// An application as the root of what its user interface is made of.
class AccessibleApplication {
 public:
  virtual ~AccessibleApplication() = default;
};

// Observes one application until it is destroyed.
class AccessibilityObserver {
 public:
  virtual ~AccessibilityObserver() = default;

  // Tells of this notification from now on. False when it cannot be had, and when it is told of already.
  [[nodiscard]] virtual bool add(const std::string& notification) = 0;

  // Does nothing for a notification that was not added.
  virtual void remove(const std::string& notification) = 0;
};

class Accessibility {
 public:
  // Called out of the main run loop. `element` is the part of the user interface that the event is about, as
  // the system's own object for it, which a Cocoa dictionary can hold; null when the system gives none.
  // `notification` is the name as the system gives it, UTF-8.
  using Handler = std::function<void(void* element, const std::string& notification)>;

  virtual ~Accessibility() = default;

  // Null when there is no such process.
  [[nodiscard]] virtual std::unique_ptr<AccessibleApplication> application(pid_t pid) = 0;

  // Null where the application cannot be observed: the system has no accessibility service, or the
  // application takes no part in it.
  [[nodiscard]] virtual std::unique_ptr<AccessibilityObserver> observe(
      const AccessibleApplication& application, Handler handler) = 0;
};

}  // namespace kr::platform
