#include "platform/linux/ChildSignalGuard.h"

#include <unistd.h>

namespace kr::platform {
namespace {

bool isDefault(const struct sigaction& action) {
  return (action.sa_flags & (SA_SIGINFO | SA_NOCLDWAIT)) == 0 && action.sa_handler == SIG_DFL;
}

}  // namespace

ChildSignalGuard::ChildSignalGuard() noexcept {
  struct sigaction standard {};
  standard.sa_handler = SIG_DFL;
  ::sigaction(SIGCHLD, &standard, &previous_);
}

ChildSignalGuard::~ChildSignalGuard() {
  struct sigaction current {};
  ::sigaction(SIGCHLD, nullptr, &current);
  // Somebody else's handler that has come meanwhile stays.
  if (!isDefault(current) || isDefault(previous_)) return;
  ::sigaction(SIGCHLD, &previous_, nullptr);
  ::kill(::getpid(), SIGCHLD);
}

}  // namespace kr::platform
