#include "platform/replace/OwnProcess.h"

#include <pthread.h>
#include <stdlib.h>

namespace kr::platform::replace {
namespace {

constexpr std::size_t kThreadStack = 1UL << 20;

}  // namespace

void clearEnvironment() noexcept {
  ::clearenv();
}

void giveThreadsRoom() noexcept {
  pthread_attr_t attributes;
  if (::pthread_attr_init(&attributes) != 0) return;
  if (::pthread_attr_setstacksize(&attributes, kThreadStack) == 0) {
    (void)::pthread_setattr_default_np(&attributes);
  }
  ::pthread_attr_destroy(&attributes);
}

}  // namespace kr::platform::replace
