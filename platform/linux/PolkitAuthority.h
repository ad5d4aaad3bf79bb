// Asks the polkit authority what the calling process may do. Blocks; any thread, one at a time for each
// object.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/linux/GLibOwner.h"

namespace kr::platform {

class PolkitAuthority {
 public:
  // What the authority answers about an action.
  struct Decision {
    bool allowed = false;
    bool mayAsk = false;     // not without a password: the user has to be asked, or there was nobody to ask
    bool keeps = false;      // once the user was asked, the permission lasts for a while
    bool dismissed = false;  // the user was asked and has closed the dialog
  };

  // Connects to the system bus; null without one. Whether an authority is there shows with the first
  // question.
  [[nodiscard]] static std::unique_ptr<PolkitAuthority> connect();

  // The action that pkexec asks for before it runs the program at a path without links: the one that is
  // registered for this program, else its general one. None when no authority answers; the reason is logged.
  [[nodiscard]] std::optional<std::string> actionForProgram(const std::string& path);

  // Whether this process may do it. `interact` has the user asked, which lasts as long as the dialog is open.
  // None as above.
  [[nodiscard]] std::optional<Decision> check(const std::string& action, bool interact);

 private:
  explicit PolkitAuthority(glib::Object<GDBusConnection> bus) : bus_(std::move(bus)) {}

  // Takes over the arguments, which may be floating. Null after an error, which is logged.
  [[nodiscard]] glib::Variant call(const char* method, GVariant* arguments, const char* resultType,
                                   int milliseconds);

  glib::Object<GDBusConnection> bus_;
};

}  // namespace kr::platform
