#include "platform/WindowOrder.h"

#include <ApplicationServices/ApplicationServices.h>

#include "platform/SystemServices.h"
#include "platform/macos/ProcessManager.h"

namespace kr::platform {
namespace {

using macos::processSerialNumber;

// What the Process Manager answers to a request is nobody's concern: a process that has ended has no windows.
class ProcessManagerOrder final : public WindowOrder {
 public:
  std::optional<SerialNumber> front() override {
    ProcessSerialNumber number{};
    if (GetFrontProcess(&number) != noErr) return std::nullopt;
    return macos::serialNumber(number);
  }

  void setFront(SerialNumber process, bool frontWindowOnly) override {
    const ProcessSerialNumber number = processSerialNumber(process);
    if (frontWindowOnly) {
      SetFrontProcessWithOptions(&number, kSetFrontProcessFrontWindowOnly);
    } else {
      SetFrontProcess(&number);
    }
  }

  void setVisible(SerialNumber process, bool visible) override {
    const ProcessSerialNumber number = processSerialNumber(process);
    ShowHideProcess(&number, visible);
  }

  void wake(SerialNumber process) override {
    const ProcessSerialNumber number = processSerialNumber(process);
    WakeUpProcess(&number);
  }
};

}  // namespace

WindowOrder& systemWindowOrder() noexcept {
  static ProcessManagerOrder order;
  return order;
}

}  // namespace kr::platform
