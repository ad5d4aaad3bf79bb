#include "platform/ProcessTable.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <mutex>
#include <set>
#include <utility>

#include "platform/Format.h"
#include "platform/SystemServices.h"
#include "platform/linux/BundlePath.h"
#include "platform/linux/ProcFS.h"
#include "platform/linux/ProcessBundle.h"
#include "platform/linux/X11Desktop.h"

namespace kr::platform {
namespace {

std::optional<ProcessLocation> location(pid_t pid) {
  std::optional<std::string> executable = procfs::executable(pid);
  if (!executable) return std::nullopt;
  std::optional<std::string> bundle = innermostBundle(*executable);
  return ProcessLocation{std::move(*executable), std::move(bundle)};
}

// A process is an application when it runs out of a bundle or shows windows. The running program always
// counts.
class ProcTable final : public ProcessTable {
 public:
  std::vector<SerialNumber> all() override {
    struct Found {
      std::uint64_t start;
      pid_t pid;
    };
    std::vector<Found> found;
    const std::set<pid_t> windowOwners = X11Desktop::shared().windowOwners();
    for (const pid_t pid : procfs::processIDs()) {
      // The link to the executable is read first: that sorts most processes out at the least cost.
      if (!isApplication(pid, windowOwners)) continue;
      const std::optional<procfs::Status> status = procfs::status(pid);
      if (status && !status->hasEnded()) found.push_back({status->startTicks, pid});
    }
    std::sort(found.begin(), found.end(), [](const Found& one, const Found& other) {
      return std::pair(one.start, one.pid) < std::pair(other.start, other.pid);
    });
    std::vector<SerialNumber> list;
    list.reserve(found.size());
    for (const Found& entry : found)
      list.push_back(procfs::serialNumber(entry.pid, {.startTicks = entry.start}));
    forgetAllBut(list);
    return list;
  }

  std::optional<SerialNumber> current() override { return procfs::serialNumber(::getpid()); }

  std::optional<SerialNumber> forPID(pid_t pid) override {
    const std::optional<SerialNumber> serial = procfs::serialNumber(pid);
    if (!serial) return std::nullopt;
    if (isApplication(pid, {}) || X11Desktop::shared().windowOwners().contains(pid)) return serial;
    return std::nullopt;
  }

  std::optional<pid_t> pid(SerialNumber process) override { return procfs::runningProcessID(process); }

  bool same(SerialNumber one, SerialNumber other) override { return one == other; }

  std::optional<ProcessRecord> record(SerialNumber process) override {
    const std::optional<ProcessFacts> known = facts(process);
    return known ? std::optional(ProcessRecord{known->signature, known->name}) : std::nullopt;
  }

  std::optional<std::string> displayName(SerialNumber process) override {
    const std::optional<ProcessFacts> known = facts(process);
    return known ? std::optional(known->displayName) : std::nullopt;
  }

  std::optional<std::string> bundleLocation(SerialNumber process) override {
    const std::optional<ProcessLocation> place = runningLocation(process);
    return place ? std::optional(place->bundle.value_or(place->executable)) : std::nullopt;
  }

  std::optional<std::string> information(SerialNumber process) override {
    const std::optional<ProcessFacts> known = facts(process);
    return known ? std::optional(known->information) : std::nullopt;
  }

  bool isNativePackage(SerialNumber process) override {
    const std::optional<ProcessLocation> place = runningLocation(process);
    return place && place->bundle;
  }

  std::optional<std::string> versionResource(SerialNumber) override { return std::nullopt; }

  double startTime(pid_t pid) override {
    const std::optional<procfs::Status> status = procfs::status(pid);
    const std::optional<double> boot = procfs::bootTime();
    if (!status || !boot) return 0.0;
    return *boot + static_cast<double>(status->startTicks) / procfs::ticksPerSecond();
  }

  std::optional<std::string> userTime(pid_t pid) override {
    const std::optional<procfs::Status> status = procfs::status(pid);
    if (!status) return std::nullopt;
    // Hundredths first, so that 59.999 seconds never print as "0:60.00".
    const double seconds = static_cast<double>(status->userTicks) / procfs::ticksPerSecond();
    const auto hundredths = static_cast<long long>(std::floor(seconds * 100.0));
    return formatted("%lld:%02lld.%02lld", hundredths / 6000, hundredths / 100 % 60, hundredths % 100);
  }

 private:
  struct Known {
    ProcessLocation location;
    ProcessFacts facts;
  };

  static bool isApplication(pid_t pid, const std::set<pid_t>& windowOwners) {
    if (pid == ::getpid() || windowOwners.contains(pid)) return true;
    const std::optional<std::string> executable = procfs::executable(pid);
    return executable && innermostBundle(*executable);
  }

  static std::optional<ProcessLocation> runningLocation(SerialNumber process) {
    std::optional<ProcessLocation> place = location(procfs::processID(process));
    // Asked after the location was read, so that it is not another process's.
    return place && procfs::runningProcessID(process) ? std::move(place) : std::nullopt;
  }

  // The bundle is read once for each process, and again when the process has replaced its program by another
  // one.
  std::optional<ProcessFacts> facts(SerialNumber process) {
    const std::optional<ProcessLocation> place = runningLocation(process);
    if (!place) return std::nullopt;
    {
      const std::lock_guard lock(mutex_);
      const auto known = known_.find(process);
      if (known != known_.end() && known->second.location == *place) return known->second.facts;
    }
    const ProcessFacts read = processFacts(*place, procfs::processID(process));
    const std::lock_guard lock(mutex_);
    known_.insert_or_assign(process, Known{*place, read});
    return read;
  }

  void forgetAllBut(const std::vector<SerialNumber>& running) {
    const std::set<SerialNumber> keep(running.begin(), running.end());
    const std::lock_guard lock(mutex_);
    std::erase_if(known_, [&](const auto& entry) { return !keep.contains(entry.first); });
  }

  std::mutex mutex_;
  std::map<SerialNumber, Known> known_;
};

}  // namespace

ProcessTable& systemProcessTable() noexcept {
  static ProcTable& table = *new ProcTable;
  return table;
}

}  // namespace kr::platform
