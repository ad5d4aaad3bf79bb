// Makes an installed product known to the system and starts it, with the waits and repetitions that a bundle
// needs which was copied a moment ago. Blocks its caller for up to seven seconds: install thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kr {

// What one step answered, or the text of the exception that it raised.
template <class Value>
struct Guarded {
  Value value{};
  std::optional<std::string> exception;
};

// The steps, each guarded on its own by whoever implements them.
class LaunchSteps {
 public:
  virtual ~LaunchSteps() = default;
  virtual Guarded<std::int32_t> registerProduct() = 0;  // 0 is success
  virtual Guarded<bool> hasIcon() = 0;
  virtual Guarded<bool> open() = 0;
  virtual void bringInstallerForward() = 0;
};

// Runs the steps for the product at the destination and logs each. No outcome is an error: a product that
// does not start is installed all the same.
void launchProduct(const std::string& destination, LaunchSteps& steps);

}  // namespace kr
