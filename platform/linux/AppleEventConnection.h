// The connection to the session bus that Apple events are sent over. It is the program's own: the end of the
// bus ends neither it nor the program. Any thread.
#pragma once

#include <mutex>
#include <string>

#include "platform/linux/GLibOwner.h"

namespace kr::platform {

class AppleEventConnection {
 public:
  // A connection that works, made now where there is none yet; null without a bus. A bus is never started,
  // and one that does not answer is given up after two seconds.
  [[nodiscard]] glib::Object<GDBusConnection> get();

 private:
  std::mutex mutex_;
  std::string address_;
  glib::Object<GDBusConnection> connection_;
};

}  // namespace kr::platform
