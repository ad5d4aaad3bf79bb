#include "platform/Authorization.h"

#include <Security/Authorization.h>

#include "platform/SystemServices.h"

namespace kr::platform {
namespace {

class SecurityReference final : public AuthorizationReference {
 public:
  explicit SecurityReference(AuthorizationRef reference) noexcept : reference_(reference) {}
  ~SecurityReference() override { AuthorizationFree(reference_, kAuthorizationFlagDefaults); }
  SecurityReference(const SecurityReference&) = delete;
  SecurityReference& operator=(const SecurityReference&) = delete;

  AuthorizationStatus obtainRight(const char* name, std::uint32_t flags) override {
    AuthorizationItem item{name, 0, nullptr, 0};
    const AuthorizationRights rights{1, &item};
    return AuthorizationCopyRights(reference_, &rights, kAuthorizationEmptyEnvironment, flags, nullptr);
  }

  AuthorizationStatus execute(const char* tool, const char* const* arguments) override {
    // The strings are not changed, whatever the declaration allows.
    return AuthorizationExecuteWithPrivileges(reference_, tool, kAuthorizationFlagDefaults,
                                              const_cast<char* const*>(arguments), nullptr);
  }

 private:
  AuthorizationRef reference_;
};

class SecurityAuthorization final : public Authorization {
 public:
  // The right that is asked for is one of the whole user, whatever program it is for.
  std::unique_ptr<AuthorizationReference> create(const std::string&) override {
    AuthorizationRef reference = nullptr;
    if (AuthorizationCreate(nullptr, kAuthorizationEmptyEnvironment, kAuthorizationFlagDefaults,
                            &reference) != errAuthorizationSuccess) {
      return nullptr;
    }
    return std::make_unique<SecurityReference>(reference);
  }
};

static_assert(kAuthorizationDenied == errAuthorizationDenied &&
              kAuthorizationCanceled == errAuthorizationCanceled &&
              kAuthorizationWithoutInteraction == errAuthorizationInteractionNotAllowed &&
              kAuthorizationToolNotStarted == errAuthorizationToolExecuteFailure);
static_assert(kInteractionAllowed == kAuthorizationFlagInteractionAllowed &&
              kExtendRights == kAuthorizationFlagExtendRights &&
              kPreAuthorize == kAuthorizationFlagPreAuthorize);

}  // namespace

Authorization& systemAuthorization() noexcept {
  static SecurityAuthorization& authorization = *new SecurityAuthorization;
  return authorization;
}

}  // namespace kr::platform
