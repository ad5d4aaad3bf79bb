#include "platform/linux/PrivilegedProgram.h"

#include <sys/wait.h>

#include <cerrno>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/Log.h"
#include "platform/Paths.h"
#include "platform/posix/ChildProcess.h"
#include "platform/posix/Files.h"

namespace kr::platform {
namespace {

// pkexec's statuses for what it has not started.
constexpr int kDismissed = 126;
constexpr int kNotStarted = 127;

// The kernel keeps so much of the name of a program.
constexpr std::size_t kNameLength = 15;

// pkexec hands little of an environment on, and refuses to start with one that it does not like.
constexpr const char* kEnvironment = "PATH=/usr/sbin:/usr/bin:/sbin:/bin";

posix::ChildSetup setup(const std::string& elevator, const char* tool, const char* const* arguments) {
  // Without a terminal of its own to ask on: the desktop asks, or nobody.
  std::vector<std::string> words{elevator, "--disable-internal-agent", tool};
  for (; *arguments != nullptr; ++arguments) words.emplace_back(*arguments);
  return {.words = std::move(words), .environment = std::vector<std::string>{kEnvironment}};
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
  posix::ChildProcess process;
  if (const std::error_code error = process.start(setup(elevator, tool, arguments))) {
    log("could not start %@: %@", elevator, error.message());
    return kAuthorizationToolNotStarted;
  }
  const pid_t child = process.release();
  siginfo_t end{};
  if (!hasEnded(child, end) || !wasElevator(child, end, elevator)) return kAuthorized;
  ::waitpid(child, nullptr, 0);
  return refusal(end);
}

}  // namespace kr::platform
