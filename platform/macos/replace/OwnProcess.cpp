#include "platform/replace/OwnProcess.h"

#include <crt_externs.h>

namespace kr::platform::replace {

void clearEnvironment() noexcept {
  static char* none[] = {nullptr};
  *::_NSGetEnviron() = none;
}

// Threads have the same stack here whatever the limits are.
void giveThreadsRoom() noexcept {}

}  // namespace kr::platform::replace
