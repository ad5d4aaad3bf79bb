#include "tests/support/WakeUps.h"

#include <time.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace kr::testing {
namespace {

std::filesystem::directory_iterator threads(pid_t pid) {
  return std::filesystem::directory_iterator("/proc/" + std::to_string(pid) + "/task");
}

long switches(const std::filesystem::path& status) {
  constexpr std::string_view kKey = "voluntary_ctxt_switches:";
  std::ifstream file(status);
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(kKey)) return std::stol(line.substr(kKey.size()));
  }
  throw std::runtime_error("no switches in " + status.string());
}

}  // namespace

long voluntarySwitches(pid_t pid) {
  long sum = 0;
  for (const auto& thread : threads(pid)) sum += switches(thread.path() / "status");
  return sum;
}

std::size_t threadCount(pid_t pid) {
  const auto list = threads(pid);
  return static_cast<std::size_t>(std::distance(begin(list), end(list)));
}

double processorSeconds(pid_t pid) {
  clockid_t clock{};
  timespec used{};
  if (::clock_getcpuclockid(pid, &clock) != 0 || ::clock_gettime(clock, &used) != 0) return 0;
  return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) / 1e9;
}

}  // namespace kr::testing
