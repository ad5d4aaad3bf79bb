// How a running application is made to quit: asked politely for a time, then by force for the same time.
// Every result is a log line.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

namespace kr {

// Ends the process with this ID, 0 for none. `name` is for the log. True once the process has gone. Blocks
// for up to twice `seconds`; any thread.
[[nodiscard]] bool quitWithTimeout(pid_t pid, const std::optional<std::string>& name, float seconds);

}  // namespace kr
