// A library that is loaded when it is first wanted, so that a start does not pay for it and a machine may be
// without it. It stays loaded for the life of the program.
#pragma once

#include <string>

namespace kr::platform {

class SharedLibrary {
 public:
  // `name` is the name under which the loader finds it, such as "libpulse.so.0".
  explicit SharedLibrary(const char* name) noexcept;

  // The function of that name; null, and remembered as missing, where the library has none.
  template <class Function>
  [[nodiscard]] Function* function(const char* name) noexcept {
    return reinterpret_cast<Function*>(address(name));
  }

  // Whether the library is there and had every function that was asked for; else why not.
  [[nodiscard]] bool isComplete() const noexcept { return problem_.empty(); }
  [[nodiscard]] const std::string& problem() const noexcept { return problem_; }

 private:
  void* address(const char* name) noexcept;

  void* library_;
  std::string problem_;
};

}  // namespace kr::platform
