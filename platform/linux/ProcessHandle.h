// Holds one process by a descriptor of the kernel's, so that neither a signal nor a question ever reaches
// another process that was given the same ID later. Any thread.
#pragma once

#include <sys/types.h>

#include <optional>

#include "platform/SerialNumber.h"
#include "platform/posix/FileDescriptor.h"

namespace kr::platform {

class ProcessHandle {
 public:
  // None when no process has the ID, or only one that has ended.
  [[nodiscard]] static std::optional<ProcessHandle> open(pid_t pid);
  // None when that very process has ended.
  [[nodiscard]] static std::optional<ProcessHandle> open(SerialNumber process);

  // False when the process has ended. True when it was signalled, and also when it runs but this user may not
  // signal it: who takes "not delivered" for "gone" must not be told so of a process that still runs.
  [[nodiscard]] bool signal(int number) const;

  // Also true of a process that has ended but was not reaped yet.
  [[nodiscard]] bool hasEnded() const;

  // Can be read once the process has ended. It is closed with the handle.
  [[nodiscard]] int descriptor() const { return descriptor_.get(); }

 private:
  explicit ProcessHandle(posix::FileDescriptor descriptor) : descriptor_(std::move(descriptor)) {}

  posix::FileDescriptor descriptor_;
};

}  // namespace kr::platform
