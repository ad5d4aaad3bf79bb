#include "platform/macos/KernelTimes.h"

#include <sys/sysctl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "platform/Format.h"
#include "platform/posix/Files.h"

namespace kr::macos {
namespace {

constexpr char kUserTimeFile[] = "/tmp/proc_cpu_time.txt";

}  // namespace

double startTime(pid_t pid) {
  std::array<int, 4> name{CTL_KERN, KERN_PROC, KERN_PROC_PID, pid};
  std::size_t size = 0;
  if (::sysctl(name.data(), name.size(), nullptr, &size, nullptr, 0) != 0) return 0.0;
  std::vector<char> buffer(std::max(size, sizeof(kinfo_proc)));
  if (::sysctl(name.data(), name.size(), buffer.data(), &size, nullptr, 0) != 0 && errno == ENOMEM)
    return 0.0;
  // After any other failure, and for a process that has ended, the buffer still holds zeros.
  kinfo_proc process{};
  std::memcpy(&process, buffer.data(), sizeof process);
  const timeval start = process.kp_proc.p_starttime;
  return static_cast<double>(start.tv_sec) + static_cast<double>(start.tv_usec) * 0.000001;
}

std::optional<std::string> userTime(pid_t pid) {
  const std::string command = formatted("ps -o utime= -p %d > %@", pid, kUserTimeFile);
  (void)std::system(command.c_str());
  return files::contents(kUserTimeFile);
}

}  // namespace kr::macos
