#include "platform/Launcher.h"

#include <unistd.h>

#include "platform/FourCharacterCode.h"
#include "platform/Paths.h"
#include "platform/ProcessTable.h"
#include "platform/SystemServices.h"
#include "platform/linux/LoginLaunch.h"
#include "platform/linux/ProcFS.h"
#include "platform/posix/Files.h"

namespace kr::platform {
namespace {

std::string controlGroups(pid_t pid) {
  return files::contents("/proc/" + std::to_string(pid) + "/cgroup").value_or("");
}

std::string programName(pid_t pid) {
  return std::string(paths::lastComponent(procfs::executable(pid).value_or("")));
}

pid_t parentOf(pid_t pid) {
  const std::optional<procfs::Status> status = procfs::status(pid);
  return status ? status->parent : 0;
}

// The parent, or who has told it to start the program where it is a shell.
pid_t launchingProcess() {
  pid_t pid = ::getppid();
  while (isShell(programName(pid))) pid = parentOf(pid);
  return pid;
}

// What one application of a unit starts is in the same unit.
bool isStartOfUnit(pid_t launcher) {
  const std::string own = controlGroups(::getpid());
  const std::string others = controlGroups(launcher);
  const auto unit = autostartUnit(own);
  return unit && unit != autostartUnit(others);
}

class LaunchingProcess final : public Launcher {
 public:
  std::optional<std::string> signature() override {
    const pid_t launcher = launchingProcess();
    if (isStartOfUnit(launcher) || startsLoginItems(programName(launcher))) return kLoginItemLauncher;
    // Signatures are those of bundles, so the windows of the desktop need not be asked for.
    const std::optional<SerialNumber> process = procfs::serialNumber(launcher);
    if (!process || !systemProcessTable().isNativePackage(*process)) return std::nullopt;
    const std::optional<ProcessRecord> record = systemProcessTable().record(*process);
    return record ? std::optional(textFromCode(record->signature)) : std::nullopt;
  }
};

}  // namespace

Launcher& systemLauncher() noexcept {
  static LaunchingProcess launcher;
  return launcher;
}

}  // namespace kr::platform
