// The folders that the system sets aside for a purpose, and how it shows paths to people. Any thread.
#pragma once

#include <optional>
#include <string>

namespace kr::platform {

class StandardFolders {
 public:
  virtual ~StandardFolders() = default;

  // The user's home folder, without a slash at the end.
  [[nodiscard]] virtual std::string home() = 0;

  // The Applications folder of the whole machine, and that of the user alone. Neither need exist.
  [[nodiscard]] virtual std::optional<std::string> localApplications() = 0;
  [[nodiscard]] virtual std::optional<std::string> userApplications() = 0;

  // The name of the item at the path as a file viewer shows it, in the user's language.
  [[nodiscard]] virtual std::string displayName(const std::string& path) = 0;
};

}  // namespace kr::platform
