#include "platform/linux/PrivilegedProgram.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <vector>

#include "platform/Log.h"
#include "platform/Paths.h"
#include "platform/posix/Files.h"

namespace kr::platform {
namespace {

// pkexec's statuses for what it has not started.
constexpr int kDismissed = 126;
constexpr int kNotStarted = 127;

// The kernel keeps so much of the name of a program.
constexpr std::size_t kNameLength = 15;

// pkexec hands little of an environment on, and refuses to start with one that it does not like.
constexpr const char* kEnvironment[] = {"PATH=/usr/sbin:/usr/bin:/sbin:/bin", nullptr};

class SpawnAttributes {
 public:
  SpawnAttributes() {
    ::posix_spawnattr_init(&attributes_);
    ::posix_spawn_file_actions_init(&actions_);
    sigset_t all;
    ::sigfillset(&all);
    ::posix_spawnattr_setsigdefault(&attributes_, &all);
    ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF);
    ::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  }
  ~SpawnAttributes() {
    ::posix_spawn_file_actions_destroy(&actions_);
    ::posix_spawnattr_destroy(&attributes_);
  }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;

  [[nodiscard]] const posix_spawnattr_t* attributes() const { return &attributes_; }
  [[nodiscard]] const posix_spawn_file_actions_t* actions() const { return &actions_; }

 private:
  posix_spawnattr_t attributes_{};
  posix_spawn_file_actions_t actions_{};
};

int start(pid_t& child, const std::string& elevator, const char* tool, const char* const* arguments) {
  // Without a terminal of its own to ask on: the desktop asks, or nobody.
  std::vector<char*> words{const_cast<char*>(elevator.c_str()), const_cast<char*>("--disable-internal-agent"),
                           const_cast<char*>(tool)};
  for (; *arguments != nullptr; ++arguments) words.push_back(const_cast<char*>(*arguments));
  words.push_back(nullptr);
  const SpawnAttributes spawn;
  return ::posix_spawn(&child, elevator.c_str(), spawn.actions(), spawn.attributes(), words.data(),
                       const_cast<char* const*>(kEnvironment));
}

// Waits for the end of a child and leaves it to be waited for again. False when somebody else has taken it.
bool hasEnded(pid_t child, siginfo_t& end) {
  int result = 0;
  do {
    result = ::waitid(P_PID, static_cast<id_t>(child), &end, WEXITED | WNOWAIT);
  } while (result != 0 && errno == EINTR);
  return result == 0;
}

// Whether a child that has ended was still pkexec: it becomes the program that it starts, under the same ID.
// A status of the program's own may be the same number. Where the system hides the processes of root the
// number has to do.
bool wasElevator(pid_t child, const siginfo_t& end, const std::string& elevator) {
  std::string name = files::contents("/proc/" + std::to_string(child) + "/comm").value_or("");
  if (name.empty())
    return end.si_code == CLD_EXITED && (end.si_status == kDismissed || end.si_status == kNotStarted);
  if (name.ends_with('\n')) name.pop_back();
  return name == paths::lastComponent(elevator).substr(0, kNameLength);
}

AuthorizationStatus refusal(const siginfo_t& end) {
  if (end.si_code == CLD_EXITED && end.si_status == kDismissed) return kAuthorizationCanceled;
  if (end.si_code == CLD_EXITED && end.si_status == kNotStarted) return kAuthorizationDenied;
  return kAuthorizationToolNotStarted;
}

}  // namespace

AuthorizationStatus runPrivileged(const std::string& elevator, const char* tool,
                                  const char* const* arguments) {
  pid_t child = 0;
  if (const int error = start(child, elevator, tool, arguments); error != 0) {
    log("could not start %@: %@", elevator, std::generic_category().message(error));
    return kAuthorizationToolNotStarted;
  }
  siginfo_t end{};
  if (!hasEnded(child, end) || !wasElevator(child, end, elevator)) return kAuthorized;
  ::waitpid(child, nullptr, 0);
  return refusal(end);
}

}  // namespace kr::platform
