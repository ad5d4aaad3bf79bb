#include "platform/linux/ProcessHandle.h"

#include <poll.h>

#include <cerrno>

#include "platform/linux/ProcFS.h"

// The header of this C library lacks the linkage that C++ needs.
extern "C" {
#include <sys/pidfd.h>
}

namespace kr::platform {

std::optional<ProcessHandle> ProcessHandle::open(pid_t pid) {
  if (pid <= 0) return std::nullopt;
  posix::FileDescriptor descriptor(::pidfd_open(pid, 0));
  if (!descriptor) return std::nullopt;
  ProcessHandle handle(std::move(descriptor));
  if (handle.hasEnded()) return std::nullopt;
  return handle;
}

std::optional<ProcessHandle> ProcessHandle::open(SerialNumber process) {
  std::optional<ProcessHandle> handle = open(procfs::processID(process));
  // Asked after the descriptor was opened: while the process it holds runs, its ID is nobody else's.
  if (!handle || !procfs::runningProcessID(process) || handle->hasEnded()) return std::nullopt;
  return handle;
}

bool ProcessHandle::signal(int number) const {
  // The kernel accepts signals to a process that has ended and was not reaped.
  if (hasEnded()) return false;
  if (::pidfd_send_signal(descriptor_.get(), number, nullptr, 0) == 0) return true;
  return errno != ESRCH;
}

bool ProcessHandle::hasEnded() const {
  pollfd wait{descriptor_.get(), POLLIN, 0};
  int count = 0;
  do {
    count = ::poll(&wait, 1, 0);
  } while (count < 0 && errno == EINTR);
  return count > 0;
}

}  // namespace kr::platform
