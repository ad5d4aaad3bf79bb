// Holds running processes by descriptors of the kernel's, and so learns of their ends without asking. Any
// thread.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <map>
#include <mutex>
#include <set>
#include <vector>

#include "platform/SerialNumber.h"
#include "platform/linux/ProcessHandle.h"
#include "platform/posix/FileDescriptor.h"

namespace kr::platform {

class ProcessEnds {
 public:
  // Holds at most so many descriptors; half of those that the program may open where it is not said.
  explicit ProcessEnds(std::size_t mostDescriptors = halfOfTheLimit());

  // Can be read while a process that is held has ended and takeEnded() has not told so.
  [[nodiscard]] int descriptor() const { return queue_.get(); }

  // True when the process is watched from now on; false when it is watched already or has ended. Beyond the
  // limit a process is watched without a descriptor: its end is found out by takeEnded(), whenever that is
  // called.
  bool watch(SerialNumber process);

  // Whether a process of this ID is watched.
  [[nodiscard]] bool isWatched(pid_t pid) const;

  // The processes that have ended, each once.
  [[nodiscard]] std::vector<SerialNumber> takeEnded();

 private:
  [[nodiscard]] static std::size_t halfOfTheLimit();
  bool hold(SerialNumber process, ProcessHandle handle);

  const std::size_t mostDescriptors_;
  posix::FileDescriptor queue_;
  mutable std::mutex mutex_;
  std::map<SerialNumber, ProcessHandle> held_;
  std::set<SerialNumber> unheld_;
  std::multiset<pid_t> processIDs_;
};

}  // namespace kr::platform
