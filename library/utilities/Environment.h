// Where the running program lies and on what. Any thread.
#pragma once

#include <string>

namespace kr {

// Whether the program runs from its distribution disk: from a volume that has one of the marker files
// ".launchlock" and "launchlock" at its root.
[[nodiscard]] bool runsFromDistributionDisk();

// Whether the program should offer to install itself: it runs from its distribution disk, from a copy that
// the system has made for this run, or from a folder for temporary files.
[[nodiscard]] bool isInInstallationMode();

// The name of the file system that the path lies on, as the system gives it; "" where it gives none. Logs the
// question and what the system's call returned.
[[nodiscard]] std::string fileSystemType(const std::string& path);

// What the alias at the path leads to; the path itself where it is no alias.
[[nodiscard]] std::string resolvedAlias(const std::string& path);

}  // namespace kr
