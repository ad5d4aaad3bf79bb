// Sends what the installer prints to its log file when a product has started it. Main thread, before other
// threads run.
#pragma once

#include <string>
#include <string_view>

namespace kr {

// Below the user's home folder.
inline constexpr std::string_view kInstallerLogPath = "~/Library/Logs/VelmoraInstaller.log";

// Reopens standard output, then standard error, on the log of the user with this home folder, to append to
// it; a stream for which that fails goes to /dev/null. A missing folder on the way to the log is made first.
void redirectStandardStreams(const std::string& home);

}  // namespace kr
