// Why an operation on the disk or the desktop failed: the step, the path that it failed at, and the system's
// reason. An operation answers std::optional<Failure>; none means that it succeeded.
#pragma once

#include <string>
#include <system_error>

namespace kr::platform {

struct Failure {
  std::string step;       // a verb phrase, such as "open" or "create folder"
  std::string path;       // file-system bytes
  std::error_code error;  // empty when the refusal is a rule of ours; then `step` says all

  // One line for the log, such as "create folder /x/y: Permission denied".
  [[nodiscard]] std::string text() const;
};

}  // namespace kr::platform
