// What the system says about volumes, and about files that stand for other files. Paths are file-system
// bytes. Any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kr::platform {

// The type of the file system that a path lies on, as the system names it.
struct FileSystemType {
  std::int32_t status = 0;  // what the system's call has returned: 0 is success
  std::string name;
};

class FileSystems {
 public:
  virtual ~FileSystems() = default;

  // On Linux one that does not answer in time has the type of where the path's text lies, if that may be one
  // that does not answer; else there is none (-1).
  [[nodiscard]] virtual FileSystemType type(const std::string& path) = 0;

  // What the alias at the path leads to in the end; none for what is no alias, and where it leads nowhere.
  // On Linux none as well when no answer comes in time.
  [[nodiscard]] virtual std::optional<std::string> aliasTarget(const std::string& path) = 0;

  // The folders in which volumes that people insert or open appear under their names. Of several that a path
  // lies in, the first counts.
  [[nodiscard]] virtual std::vector<std::string> volumeFolders() = 0;
};

}  // namespace kr::platform
