#include "platform/linux/BundlePath.h"

#include "platform/Paths.h"

namespace kr::platform {

std::optional<std::string> innermostBundle(std::string_view executablePath) {
  for (std::string_view path = paths::parent(executablePath); path.size() > 1; path = paths::parent(path)) {
    if (paths::extension(path) == "app") return std::string(path);
  }
  return std::nullopt;
}

}  // namespace kr::platform
