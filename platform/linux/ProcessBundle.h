// What the bundle of a process says about it. Paths are file-system bytes, other texts UTF-8. Any thread.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>

namespace kr::platform {

// The file of a process and the bundle that it lies in.
struct ProcessLocation {
  std::string executable;
  std::optional<std::string> bundle;

  friend bool operator==(const ProcessLocation&, const ProcessLocation&) = default;
};

struct ProcessFacts {
  std::uint32_t signature = 0;  // '????' without one, or with one that is none
  std::string name;
  std::string displayName;
  std::string information;  // serialised property list
};

// Reads the bundle's information dictionary, where there is one.
[[nodiscard]] ProcessFacts processFacts(const ProcessLocation& location, pid_t pid);

}  // namespace kr::platform
