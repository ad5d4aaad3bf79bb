// The real polkit authority, on a system bus of the test's own, with actions and rules of the test's own. For
// root: the test's process leaves the machine's view of the folders concerned, for good, and so do the
// processes that it starts. What is the machine's is not touched.
#pragma once

#include <string>

#include "tests/support/Child.h"
#include "tests/support/Desktop.h"
#include "tests/support/ScratchFolder.h"

namespace kr::testing {

class PolkitServer {
 public:
  // `rules` are those of the administrator, in polkit's own language; `policy` is the file that declares the
  // application's actions, as it is installed, or empty for an application that is not registered. Throws
  // std::runtime_error where a part does not start.
  PolkitServer(const std::string& rules, const std::string& policy);

  // Ends one part early, as if it had crashed.
  void stopAuthority() { authority_.stop(); }
  void stopBus() { bus_.stop(); }

 private:
  ScratchFolder folder_;
  ScopedVariable systemBus_;
  Child bus_;
  Child authority_;
};

}  // namespace kr::testing
