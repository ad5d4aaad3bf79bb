// Runs a tool with administrator rights and says how it ended. Blocks its caller: install thread.
#pragma once

#include <cstdint>

#include "platform/Authorization.h"

namespace kr {

// Starts the tool at a path (zero-terminated bytes of the file system) with these arguments, a list that a
// null pointer ends, and waits for a child process to end: any one, so the calling thread has no other. 0: it
// ended with status 0, or there was none left to wait for; -1: it ended in another way; else why it could not
// be started. Logs every failure.
[[nodiscard]] std::int32_t AuthorizedExecute(platform::AuthorizationReference& reference, const char* tool,
                                             const char* const* arguments);

}  // namespace kr
