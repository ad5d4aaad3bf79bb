// A running application of the test: a bundle in a scratch folder and a process of its executable.
//
//   TestApplication product(folder, "Product.app", {.signature = "ABCD"}, {"window", "One"});
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/support/Child.h"
#include "tests/support/ScratchFolder.h"

namespace kr::testing {

// The information dictionary; what is empty is left out.
struct BundleInformation {
  std::string signature;
  std::string name;
  std::string identifier;
  std::string further;  // more of the dictionary, as its XML
};

// Makes a bundle at the path inside the folder; answers the path of its executable, which is named after the
// bundle.
std::string makeBundle(const ScratchFolder& folder, const std::string& name,
                       const BundleInformation& information = {});

class TestApplication {
 public:
  // Makes the bundle, starts its executable with the words and waits until it is ready.
  TestApplication(const ScratchFolder& folder, const std::string& name,
                  const BundleInformation& information = {}, const std::vector<std::string>& words = {});
  // Starts an executable that is there already.
  explicit TestApplication(const std::string& executable, const std::vector<std::string>& words = {});

  [[nodiscard]] pid_t pid() const { return child_.pid(); }
  [[nodiscard]] Child& child() { return child_; }

 private:
  Child child_;
};

}  // namespace kr::testing
