#include "installer/Handshake.h"

#include "platform/Log.h"

namespace kr {

bool confirmsInstallation(const std::optional<std::string>& text, const std::optional<std::string>& tag) {
  log("received Done event (%@), current installation: %@", text, tag);
  if (!tag || text != tag) return false;
  log("installation finished");
  return true;
}

}  // namespace kr
