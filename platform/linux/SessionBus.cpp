#include "platform/linux/SessionBus.h"

#include <cstdlib>

#include "platform/posix/Files.h"

namespace kr::platform {

std::string sessionBusAddress() {
  if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS"); address != nullptr && *address != '\0') {
    return address;
  }
  const char* folder = std::getenv("XDG_RUNTIME_DIR");
  if (folder == nullptr || *folder == '\0') return {};
  const std::string socket = std::string(folder) + "/bus";
  return files::exists(socket) ? "unix:path=" + socket : std::string();
}

}  // namespace kr::platform
