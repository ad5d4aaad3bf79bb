// Runs a program as root through pkexec, which asks polkit whether the calling process may.
#pragma once

#include <string>

#include "platform/Authorization.h"

namespace kr::platform {

inline constexpr const char* kElevator = "/usr/bin/pkexec";

// Starts the program at an absolute path with these arguments, a list that a null pointer ends, and blocks
// until it has ended. kAuthorized: it ran, and its status is left for a wait() of the calling thread. Any
// other answer: it never ran, and no child is left. `elevator` is the path of pkexec. Log lines of the
// program go where those of the caller go.
//
// Call it under a ChildSignalGuard: the answer and the status would be lost to a handler that waits for every
// child.
[[nodiscard]] AuthorizationStatus runPrivileged(const std::string& elevator, const char* tool,
                                                const char* const* arguments);

}  // namespace kr::platform
