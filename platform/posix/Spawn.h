// What posix_spawn is asked for in another way on each system. Any thread.
#pragma once

#include <spawn.h>
#include <sys/types.h>

namespace kr::posix {

// After the actions so far, the child has nothing open but its standard streams.
void closeAllOthers(posix_spawn_file_actions_t& actions, posix_spawnattr_t& attributes);

// Starts words[0] in a working folder, where one is given: a relative path counts from there. 0 or the
// system's error.
[[nodiscard]] int spawnInFolder(pid_t& child, const char* folder, posix_spawn_file_actions_t& actions,
                                const posix_spawnattr_t& attributes, char* const* words,
                                char* const* environment);

// That of the running program.
[[nodiscard]] char** environment();

}  // namespace kr::posix
