// Copies the product with administrator rights: asks the system for them, then has a tool do the work that
// runs with them. Blocks its caller while the password dialog is open and while the tool runs: install
// thread.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace kr {

struct PrivilegedCopy {
  std::string source;                  // product to copy
  std::string destination;             // full path that it will have
  std::optional<std::string> wrapper;  // folder whose items are placed around it
  std::string tool;                    // takes the three paths in this order; status 0 is success
};

// Whether the tool ran and succeeded. `*canceled`, if asked for, says whether the user has dismissed the
// dialog; then the answer is false. `animateProgress` stops the progress animation in front of the dialog and
// starts it again after it.
[[nodiscard]] bool copyWithAuthorization(const PrivilegedCopy& copy,
                                         const std::function<void(bool start)>& animateProgress,
                                         bool* canceled);

}  // namespace kr
