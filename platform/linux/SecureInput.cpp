#include "platform/SecureInput.h"

#include "platform/SystemServices.h"

namespace kr::platform {
namespace {

// An X server does not tell which of its clients has grabbed the keyboard, and a Wayland compositor keeps all
// of it to itself.
class NoReport final : public SecureInput {
 public:
  std::optional<std::string> report() override { return std::nullopt; }
};

}  // namespace

SecureInput& systemSecureInput() noexcept {
  static NoReport input;
  return input;
}

}  // namespace kr::platform
