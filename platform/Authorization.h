// Administrator rights: asks the system for a right, for which the system asks the user in a dialog of its
// own, and runs a program with it. The calls block while a dialog is open. One thread for each reference.
//
//   const auto reference = services().authorization->create(tool);
//   if (reference && reference->obtainRight("system.privilege.admin", kInteractionAllowed) == kAuthorized) {
//     const auto started = reference->execute(tool.c_str(), arguments);
//   }
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace kr::platform {

// 0, or one of the codes below, or another error code of the system.
using AuthorizationStatus = std::int32_t;

inline constexpr AuthorizationStatus kAuthorized = 0;
inline constexpr AuthorizationStatus kAuthorizationDenied = -60005;
inline constexpr AuthorizationStatus kAuthorizationCanceled = -60006;  // the user has dismissed the dialog
inline constexpr AuthorizationStatus kAuthorizationWithoutInteraction =
    -60007;  // nobody there to ask the user
inline constexpr AuthorizationStatus kAuthorizationToolNotStarted = -60031;

inline constexpr std::uint32_t kInteractionAllowed = 1U << 0;
inline constexpr std::uint32_t kExtendRights = 1U << 1;
inline constexpr std::uint32_t kPreAuthorize = 1U << 4;

// What this process may do beyond the user's rights. It is freed with the object.
class AuthorizationReference {
 public:
  virtual ~AuthorizationReference() = default;

  // Asks for the right of this name; `flags` say how. Kept for the lifetime of the reference, if the system
  // keeps rights at all.
  [[nodiscard]] virtual AuthorizationStatus obtainRight(const char* name, std::uint32_t flags) = 0;

  // Starts the program at the path `tool` with administrator rights and these arguments, a list that a null
  // pointer ends. After kAuthorized the program is a child of the calling process, and how it ended is left
  // for a wait() of the calling thread before the reference is freed; the call may itself last until that
  // end. After any other answer the program never ran and there is nothing to wait for.
  [[nodiscard]] virtual AuthorizationStatus execute(const char* tool, const char* const* arguments) = 0;
};

class Authorization {
 public:
  virtual ~Authorization() = default;

  // A reference without rights, meant for running the program at the path `tool`; null when there is no
  // system to ask.
  [[nodiscard]] virtual std::unique_ptr<AuthorizationReference> create(const std::string& tool) = 0;
};

}  // namespace kr::platform
