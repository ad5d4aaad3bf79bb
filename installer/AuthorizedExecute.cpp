#include "installer/AuthorizedExecute.h"

#include <sys/wait.h>

#include <cerrno>
#include <optional>

#include "platform/Log.h"

namespace kr {
namespace {

constexpr std::int32_t kToolSucceeded = 0;
constexpr std::int32_t kToolFailed = -1;

// How any child process has ended; none without one. A signal handler of the process is no reason not to
// wait.
std::optional<int> endOfAnyChild() {
  int status = 0;
  pid_t child = 0;
  do {
    child = ::wait(&status);
  } while (child < 0 && errno == EINTR);
  if (child < 0) return std::nullopt;
  return status;
}

}  // namespace

std::int32_t AuthorizedExecute(platform::AuthorizationReference& reference, const char* tool,
                               const char* const* arguments) {
  const platform::AuthorizationStatus started = reference.execute(tool, arguments);
  if (started != platform::kAuthorized) {
    log("AuthorizationExecuteWithPrivileges failed (%s)", tool);
    return started;
  }
  const std::optional<int> status = endOfAnyChild();
  if (!status) {
    // Whoever has reaped it knows how it ended; it did run.
    log("no pid");
    return kToolSucceeded;
  }
  if (WIFEXITED(*status) && WEXITSTATUS(*status) == 0) return kToolSucceeded;
  log(WIFEXITED(*status) ? "WEXITSTATUS" : "!WIFEXITED");
  return kToolFailed;
}

}  // namespace kr
