#include "library/utilities/SystemLevels.h"

#include "platform/Services.h"
#include "platform/SystemVersion.h"

namespace kr {
namespace {

constexpr double kMojave = 1639.0;

}  // namespace

bool mojaveOrNewer() {
  return platform::services().systemVersion->appKitVersion() >= kMojave;
}

}  // namespace kr
