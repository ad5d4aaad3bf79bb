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
// The program has ended by then, and the kernel hands a thread the ends of its own children before those of
// other threads' children. So a wait() for any child gets this one, provided that the calling thread has left
// no other child behind.
//
// Call it under a ChildSignalGuard. What somebody else has waited for all the same is lost: the answer is
// then kAuthorized, whatever pkexec said, and there is no child left to wait for.
[[nodiscard]] AuthorizationStatus runPrivileged(const std::string& elevator, const char* tool,
                                                const char* const* arguments);

}  // namespace kr::platform
