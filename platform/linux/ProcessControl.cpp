#include "platform/ProcessControl.h"

#include <signal.h>

#include "platform/SystemServices.h"
#include "platform/linux/ProcessHandle.h"

namespace kr::platform {
namespace {

// A polite request is SIGTERM, which applications answer as they answer their own "Quit" command.
class HeldApplication final : public RunningApplication {
 public:
  explicit HeldApplication(ProcessHandle handle) : handle_(std::move(handle)) {}

  bool terminate() override { return handle_.signal(SIGTERM); }
  bool forceTerminate() override { return handle_.signal(SIGKILL); }
  bool isTerminated() override { return handle_.hasEnded(); }

 private:
  ProcessHandle handle_;
};

class SignalControl final : public ProcessControl {
 public:
  bool isAvailable() override { return true; }

  std::unique_ptr<RunningApplication> running(pid_t pid) override {
    std::optional<ProcessHandle> handle = ProcessHandle::open(pid);
    return handle ? std::make_unique<HeldApplication>(std::move(*handle)) : nullptr;
  }
};

}  // namespace

ProcessControl& systemProcessControl() noexcept {
  static SignalControl& control = *new SignalControl;
  return control;
}

}  // namespace kr::platform
