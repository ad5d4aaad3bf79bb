#include "installer/train/Surroundings.h"

#include <fcntl.h>
#include <grp.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "platform/replace/OwnProcess.h"

namespace kr::train {
namespace {

constexpr rlim_t kOpenFiles = 256;
constexpr std::array kLimits{RLIMIT_FSIZE, RLIMIT_DATA, RLIMIT_AS, RLIMIT_STACK, RLIMIT_CPU};
// Whoever stops reading, or limits the size of files, gets a failure and not a dead process.
constexpr std::array kErrorsInstead{SIGPIPE, SIGXFSZ, SIGTTOU};

bool openStandardStreams() noexcept {
  for (int stream = 0; stream <= 2; ++stream) {
    if (::fcntl(stream, F_GETFD) >= 0) continue;
    // The lowest free number is this one.
    if (::open("/dev/null", O_RDWR) != stream) return false;
  }
  return true;
}

// Started with the rights of root by way of the file's mode, a process is still its user's in part: they may
// send it signals, and it has their groups.
bool becomeRootAltogether() noexcept {
  if (::geteuid() != 0) return true;
  return ::setgroups(0, nullptr) == 0 && ::setgid(0) == 0 && ::setuid(0) == 0;
}

void setSignal(int number, void (*effect)(int)) noexcept {
  struct sigaction action {};
  action.sa_handler = effect;
  (void)::sigaction(number, &action, nullptr);
}

void resetSignals() noexcept {
  for (int number = 1; number < NSIG; ++number) setSignal(number, SIG_DFL);
  for (const int number : kErrorsInstead) setSignal(number, SIG_IGN);
  sigset_t none;
  (void)sigemptyset(&none);  // may be a macro
  (void)::sigprocmask(SIG_SETMASK, &none, nullptr);
  const itimerval never{};
  for (const auto timer : {ITIMER_REAL, ITIMER_VIRTUAL, ITIMER_PROF}) {
    (void)::setitimer(timer, &never, nullptr);
  }
}

// Root may widen every limit; anybody else as far as the hard one.
template <class Resource>
void widen(Resource resource, rlim_t wanted) noexcept {
  rlimit limit{};
  if (::getrlimit(resource, &limit) != 0) return;
  if (limit.rlim_cur >= wanted) return;
  const rlimit wide{wanted, limit.rlim_max < wanted ? wanted : limit.rlim_max};
  if (::setrlimit(resource, &wide) == 0) return;
  limit.rlim_cur = limit.rlim_max;
  (void)::setrlimit(resource, &limit);
}

}  // namespace

bool settle() noexcept {
  if (!openStandardStreams() || !becomeRootAltogether()) return false;
  resetSignals();
  for (const auto resource : kLimits) widen(resource, RLIM_INFINITY);
  widen(RLIMIT_NOFILE, kOpenFiles);
  const rlimit noCore{0, 0};
  (void)::setrlimit(RLIMIT_CORE, &noCore);
  ::umask(S_IRWXG | S_IRWXO);
  platform::replace::clearEnvironment();
  platform::replace::giveThreadsRoom();
  return ::chdir("/") == 0;
}

}  // namespace kr::train
