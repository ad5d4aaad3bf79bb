#include "platform/linux/ProcessEnds.h"

#include <sys/epoll.h>
#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <utility>

#include "platform/linux/ProcFS.h"

namespace kr::platform {
namespace {

constexpr std::size_t kAlwaysAllowed = 16;

std::uint64_t packed(SerialNumber process) {
  return static_cast<std::uint64_t>(process.high) << 32 | process.low;
}

SerialNumber unpacked(std::uint64_t words) {
  return {static_cast<std::uint32_t>(words >> 32), static_cast<std::uint32_t>(words)};
}

}  // namespace

ProcessEnds::ProcessEnds(std::size_t mostDescriptors)
    : mostDescriptors_(mostDescriptors), queue_(::epoll_create1(EPOLL_CLOEXEC)) {}

std::size_t ProcessEnds::halfOfTheLimit() {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return kAlwaysAllowed;
  return std::max(kAlwaysAllowed, static_cast<std::size_t>(limit.rlim_cur / 2));
}

bool ProcessEnds::watch(SerialNumber process) {
  const std::lock_guard lock(mutex_);
  if (held_.contains(process) || unheld_.contains(process)) return false;
  if (held_.size() < mostDescriptors_) {
    std::optional<ProcessHandle> handle = ProcessHandle::open(process);
    if (handle && hold(process, std::move(*handle))) return true;
  }
  if (!procfs::runningProcessID(process)) return false;
  unheld_.insert(process);
  processIDs_.insert(procfs::processID(process));
  return true;
}

bool ProcessEnds::hold(SerialNumber process, ProcessHandle handle) {
  epoll_event event{};
  event.events = EPOLLIN;
  event.data.u64 = packed(process);
  if (::epoll_ctl(queue_.get(), EPOLL_CTL_ADD, handle.descriptor(), &event) != 0) return false;
  held_.emplace(process, std::move(handle));
  processIDs_.insert(procfs::processID(process));
  return true;
}

bool ProcessEnds::isWatched(pid_t pid) const {
  const std::lock_guard lock(mutex_);
  return processIDs_.contains(pid);
}

std::vector<SerialNumber> ProcessEnds::takeEnded() {
  const std::lock_guard lock(mutex_);
  std::vector<SerialNumber> ended;
  std::array<epoll_event, 64> events{};
  for (;;) {
    const int count = ::epoll_wait(queue_.get(), events.data(), static_cast<int>(events.size()), 0);
    if (count < 0 && errno == EINTR) continue;
    for (int index = 0; index < count; ++index) {
      const SerialNumber process = unpacked(events[static_cast<std::size_t>(index)].data.u64);
      // Closing the descriptor takes it out of the queue.
      if (held_.erase(process) != 0) ended.push_back(process);
    }
    if (count < static_cast<int>(events.size())) break;
  }
  std::erase_if(unheld_, [&](SerialNumber process) {
    const bool isGone = !procfs::runningProcessID(process);
    if (isGone) ended.push_back(process);
    return isGone;
  });
  for (const SerialNumber process : ended) {
    processIDs_.erase(processIDs_.find(procfs::processID(process)));
  }
  return ended;
}

}  // namespace kr::platform
