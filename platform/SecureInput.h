// What the system says about programs that keep the keyboard to themselves. Main thread.
#pragma once

#include <optional>
#include <string>

namespace kr::platform {

class SecureInput {
 public:
  virtual ~SecureInput() = default;

  // A report on the sessions of the machine, UTF-8, in which "kCGSSessionSecureInputPID"=N, with the
  // quotation marks, names each process; none when there is none to be had.
  [[nodiscard]] virtual std::optional<std::string> report() = 0;
};

}  // namespace kr::platform
