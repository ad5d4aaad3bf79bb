#include "platform/linux/PulseLibrary.h"

#include "platform/Log.h"

namespace kr::platform {

PulseLibrary::PulseLibrary() noexcept : library("libpulse.so.0") {}

const PulseLibrary* PulseLibrary::get() noexcept {
  static const PulseLibrary* const functions = []() -> const PulseLibrary* {
    const auto* const loaded = new PulseLibrary;
    if (loaded->library.isComplete()) return loaded;
    log("*** no sound: %@", loaded->library.problem());
    return nullptr;
  }();
  return functions;
}

}  // namespace kr::platform
