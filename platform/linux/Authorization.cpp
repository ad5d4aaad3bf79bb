#include "platform/Authorization.h"

#include <optional>

#include "platform/Log.h"
#include "platform/SystemServices.h"
#include "platform/linux/ChildSignalGuard.h"
#include "platform/linux/PolkitAuthority.h"
#include "platform/linux/PrivilegedProgram.h"
#include "platform/posix/Files.h"

namespace kr::platform {
namespace {

// The permission to run one program as root. polkit knows actions, not rights: whatever the right is called,
// it is the action that pkexec will ask for.
class PolkitReference final : public AuthorizationReference {
 public:
  PolkitReference(std::unique_ptr<PolkitAuthority> authority, std::string action)
      : authority_(std::move(authority)), action_(std::move(action)) {}

  AuthorizationStatus obtainRight(const char*, std::uint32_t flags) override {
    std::optional<PolkitAuthority::Decision> decision = authority_->check(action_, false);
    if (!decision || decision->allowed || !decision->mayAsk) return statusOf(decision);
    if ((flags & kInteractionAllowed) == 0) return kAuthorizationWithoutInteraction;
    // What is not kept would be asked again when the program starts; once is enough.
    if (!decision->keeps) return kAuthorized;
    return statusOf(authority_->check(action_, true));
  }

  AuthorizationStatus execute(const char* tool, const char* const* arguments) override {
    childSignal_.emplace();
    const std::string program = files::resolved(tool).value_or(tool);
    return runPrivileged(kElevator, program.c_str(), arguments);
  }

 private:
  AuthorizationStatus statusOf(const std::optional<PolkitAuthority::Decision>& decision) const {
    if (!decision) return kAuthorizationDenied;
    if (decision->allowed) return kAuthorized;
    if (decision->dismissed) return kAuthorizationCanceled;
    const bool nobodyAsked = decision->mayAsk;
    log(nobodyAsked ? "no agent to ask for %@" : "not authorized for %@", action_);
    return nobodyAsked ? kAuthorizationWithoutInteraction : kAuthorizationDenied;
  }

  std::unique_ptr<PolkitAuthority> authority_;
  std::string action_;
  std::optional<ChildSignalGuard> childSignal_;  // until the caller has waited for the program
};

class PolkitAuthorization final : public Authorization {
 public:
  std::unique_ptr<AuthorizationReference> create(const std::string& tool) override {
    std::unique_ptr<PolkitAuthority> authority = PolkitAuthority::connect();
    if (!authority) return nullptr;
    std::optional<std::string> action = authority->actionForProgram(files::resolved(tool).value_or(tool));
    if (!action) return nullptr;
    return std::make_unique<PolkitReference>(std::move(authority), *std::move(action));
  }
};

}  // namespace

Authorization& systemAuthorization() noexcept {
  static PolkitAuthorization& authorization = *new PolkitAuthorization;
  return authorization;
}

}  // namespace kr::platform
