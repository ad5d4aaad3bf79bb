#include "platform/posix/Spawn.h"

#include <crt_externs.h>
#include <dlfcn.h>

#include <cerrno>

namespace kr::posix {
namespace {

// Functions that not every version of the system has.
template <class Function>
Function* function(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_DEFAULT, name));
}

using AddFolder = int(posix_spawn_file_actions_t*, const char*);  // from 10.15 on
using EnterFolder = int(const char*);                             // for the calling thread alone
using LeaveFolder = int(int);                                     // with -1: back to the program's own

}  // namespace

void closeAllOthers(posix_spawn_file_actions_t&, posix_spawnattr_t& attributes) {
  short flags = 0;
  ::posix_spawnattr_getflags(&attributes, &flags);
  ::posix_spawnattr_setflags(&attributes, static_cast<short>(flags | POSIX_SPAWN_CLOEXEC_DEFAULT));
}

int spawnInFolder(pid_t& child, const char* folder, posix_spawn_file_actions_t& actions,
                  const posix_spawnattr_t& attributes, char* const* words, char* const* environment) {
  if (folder == nullptr) return ::posix_spawn(&child, words[0], &actions, &attributes, words, environment);
  if (auto* add = function<AddFolder>("posix_spawn_file_actions_addchdir_np")) {
    if (const int error = add(&actions, folder); error != 0) return error;
    return ::posix_spawn(&child, words[0], &actions, &attributes, words, environment);
  }
  auto* enter = function<EnterFolder>("pthread_chdir_np");
  auto* leave = function<LeaveFolder>("pthread_fchdir_np");
  if (enter == nullptr || leave == nullptr) return ENOSYS;
  if (enter(folder) != 0) return errno;
  const int error = ::posix_spawn(&child, words[0], &actions, &attributes, words, environment);
  leave(-1);
  return error;
}

char** environment() {
  return *_NSGetEnviron();
}

}  // namespace kr::posix
