#include "platform/UserInput.h"

#include "platform/SystemServices.h"
#include "platform/linux/X11Desktop.h"

namespace kr::platform {
namespace {

class XServerInput final : public UserInput {
 public:
  std::optional<std::chrono::nanoseconds> idleTime() override { return X11Desktop::shared().idleTime(); }
};

}  // namespace

UserInput& systemUserInput() noexcept {
  static XServerInput& input = *new XServerInput;
  return input;
}

}  // namespace kr::platform
