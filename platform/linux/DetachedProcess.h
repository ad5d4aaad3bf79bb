// Starts a program that outlives its caller: in a session of its own, with nothing but /dev/null for its
// standard streams, and never a zombie of the caller. Any thread.
#pragma once

#include <string>
#include <system_error>
#include <vector>

namespace kr::platform {

// Returns once the program runs in place of the new process, or the reason why it does not. `words` are its
// command line, the path of its executable first; `folder` is its working folder.
[[nodiscard]] std::error_code startDetached(const std::vector<std::string>& words, const std::string& folder);

}  // namespace kr::platform
