// Another program on the session bus, with a connection of its own, that sends what no library of ours would.
// Any thread.
#pragma once

#include <gio/gio.h>

#include <string>
#include <vector>

#include "platform/SerialNumber.h"
#include "platform/linux/GLibOwner.h"

namespace kr::testing {

class BusPeer {
 public:
  // Throws std::runtime_error where there is no bus.
  BusPeer();
  ~BusPeer();

  // Calls the method by which events are sent with this body, which it takes over, and waits for the reply:
  // the name of the error in it, empty for a reply without one.
  std::string send(platform::SerialNumber receiver, GVariant* body);
  std::string sendTo(const std::string& path, const std::string& interface, const std::string& method,
                     platform::SerialNumber receiver, GVariant* body);

  // The body of an event as the library sends it.
  static GVariant* event(std::uint32_t eventClass, std::uint32_t eventID,
                         const std::vector<std::string>& texts);

  // Sends the event so many times without waiting for anything but that all of it has left.
  void flood(platform::SerialNumber receiver, GVariant* body, int count);

  // Sends the event with the byte 0xFF in the place of every 'X' of its texts, which is no UTF-8 then, on a
  // connection that it makes for it; whether the bus closed that connection.
  static bool sendInvalidText(platform::SerialNumber receiver, GVariant* body);

 private:
  glib::Object<GDBusConnection> connection_;
};

// Whether a process has the name by which it receives events.
[[nodiscard]] bool receivesEvents(platform::SerialNumber process);

}  // namespace kr::testing
