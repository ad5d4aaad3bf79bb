#include "platform/linux/SharedLibrary.h"

#include <dlfcn.h>

namespace kr::platform {
namespace {

std::string lastProblem() {
  const char* text = ::dlerror();
  return text != nullptr ? text : "unknown";
}

}  // namespace

SharedLibrary::SharedLibrary(const char* name) noexcept : library_(::dlopen(name, RTLD_NOW | RTLD_LOCAL)) {
  if (library_ == nullptr) problem_ = lastProblem();
}

void* SharedLibrary::address(const char* name) noexcept {
  if (library_ == nullptr) return nullptr;
  void* found = ::dlsym(library_, name);
  if (found == nullptr) problem_ = lastProblem();
  return found;
}

}  // namespace kr::platform
