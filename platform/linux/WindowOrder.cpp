#include "platform/WindowOrder.h"

#include <signal.h>

#include "platform/SystemServices.h"
#include "platform/linux/ProcFS.h"
#include "platform/linux/ProcessHandle.h"
#include "platform/linux/X11Desktop.h"

namespace kr::platform {
namespace {

class X11WindowOrder final : public WindowOrder {
 public:
  std::optional<SerialNumber> front() override {
    const std::optional<pid_t> pid = desktop().activeProcess();
    return pid ? procfs::serialNumber(*pid) : std::nullopt;
  }

  void setFront(SerialNumber process, bool frontWindowOnly) override {
    if (const auto pid = procfs::runningProcessID(process)) desktop().bringToFront(*pid, frontWindowOnly);
  }

  void setVisible(SerialNumber process, bool visible) override {
    const std::optional<pid_t> pid = procfs::runningProcessID(process);
    if (!pid) return;
    if (visible) {
      desktop().show(*pid);
    } else {
      desktop().hide(*pid);
    }
  }

  void wake(SerialNumber process) override {
    if (const auto handle = ProcessHandle::open(process)) static_cast<void>(handle->signal(SIGCONT));
  }

 private:
  static X11Desktop& desktop() { return X11Desktop::shared(); }
};

}  // namespace

WindowOrder& systemWindowOrder() noexcept {
  static X11WindowOrder& order = *new X11WindowOrder;
  return order;
}

}  // namespace kr::platform
