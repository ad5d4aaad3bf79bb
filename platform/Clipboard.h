// The clipboard of the desktop. Main thread.
#pragma once

namespace kr::platform {

class Clipboard {
 public:
  virtual ~Clipboard() = default;

  // Grows whenever a program puts something on the clipboard, or clears it. Only differences mean something.
  [[nodiscard]] virtual long changeCount() = 0;
};

}  // namespace kr::platform
