#include "installer/PrivilegedCopy.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "installer/AuthorizedExecute.h"
#include "platform/Authorization.h"
#include "platform/Log.h"
#include "platform/Services.h"
#include "platform/UTF8Bytes.h"

namespace kr {
namespace {

constexpr const char* kAdministratorRight = "system.privilege.admin";
constexpr std::uint32_t kObtainFlags =
    platform::kInteractionAllowed | platform::kExtendRights | platform::kPreAuthorize;

bool isWhiteSpace(char16_t unit) {
  constexpr std::u16string_view kOthers = u"\u0020\u0085\u00A0\u1680\u2028\u2029\u202F\u205F\u3000";
  return (unit >= u'\t' && unit <= u'\r') || (unit >= u'\u2000' && unit <= u'\u200B') ||
         kOthers.find(unit) != std::u16string_view::npos;
}

bool isBlank(const std::string& path) {
  const std::u16string units = platform::utf16FromBytes(path);
  return std::all_of(units.begin(), units.end(), isWhiteSpace);
}

// The tool's command line behind its name.
std::vector<const char*> argumentsFor(const PrivilegedCopy& copy) {
  std::vector<const char*> arguments{copy.source.c_str(), copy.destination.c_str()};
  if (copy.wrapper) arguments.push_back(copy.wrapper->c_str());
  arguments.push_back(nullptr);
  return arguments;
}

}  // namespace

bool copyWithAuthorization(const PrivilegedCopy& copy, const std::function<void(bool start)>& animateProgress,
                           bool* canceled) {
  bool ignored = false;
  bool& dismissed = canceled != nullptr ? *canceled : ignored;
  dismissed = false;
  if (isBlank(copy.destination) || isBlank(copy.source)) return false;
  if (copy.tool.empty()) {
    // Nobody should type a password for nothing.
    log("The installer has no tool \"train\": nothing can be copied with authorization");
    return false;
  }

  // Nothing moves behind the dialog.
  animateProgress(false);
  const std::unique_ptr<platform::AuthorizationReference> reference =
      platform::services().authorization->create(copy.tool);
  if (!reference) return false;
  if (const auto status = reference->obtainRight(kAdministratorRight, kObtainFlags);
      status != platform::kAuthorized) {
    dismissed = status == platform::kAuthorizationCanceled;
    return false;
  }
  animateProgress(true);
  const std::int32_t status = AuthorizedExecute(*reference, copy.tool.c_str(), argumentsFor(copy).data());
  // Where the system keeps no rights it asks when the tool starts, and the user may dismiss the dialog there.
  dismissed = status == platform::kAuthorizationCanceled;
  return status == 0;
}

}  // namespace kr
