#include "platform/posix/Spawn.h"

#include <unistd.h>

namespace kr::posix {

void closeAllOthers(posix_spawn_file_actions_t& actions, posix_spawnattr_t&) {
  ::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
}

int spawnInFolder(pid_t& child, const char* folder, posix_spawn_file_actions_t& actions,
                  const posix_spawnattr_t& attributes, char* const* words, char* const* environment) {
  if (folder != nullptr) ::posix_spawn_file_actions_addchdir_np(&actions, folder);
  return ::posix_spawn(&child, words[0], &actions, &attributes, words, environment);
}

char** environment() {
  return environ;
}

}  // namespace kr::posix
