// Which application is in front, and which is hidden. Requests go to the window manager, which may decline
// them; no request reports a result. Without a window system there is no front application and requests do
// nothing. Any thread.
#pragma once

#include <optional>

#include "platform/SerialNumber.h"

namespace kr::platform {

class WindowOrder {
 public:
  virtual ~WindowOrder() = default;

  [[nodiscard]] virtual std::optional<SerialNumber> front() = 0;

  // Brings all windows of the application to the front, or its front window only.
  virtual void setFront(SerialNumber process, bool frontWindowOnly) = 0;

  virtual void setVisible(SerialNumber process, bool visible) = 0;

  // Makes a suspended process run again.
  virtual void wake(SerialNumber process) = 0;
};

}  // namespace kr::platform
