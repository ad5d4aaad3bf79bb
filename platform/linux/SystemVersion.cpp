#include "platform/SystemVersion.h"

#include <array>
#include <cstdlib>

#include "platform/SystemServices.h"

namespace kr::platform {
namespace {

// The Cocoa level that this port offers is that of 10.15; KR_SYSTEM_VERSION ("10.13") names another one, for
// support and tests.
constexpr int kOffered = 1015;

struct Level {
  int version;  // major * 100 + minor
  double appKit;
};
constexpr std::array<Level, 13> kLevels{{{1003, 743.0},
                                         {1004, 824.0},
                                         {1005, 949.0},
                                         {1006, 1038.0},
                                         {1007, 1138.0},
                                         {1008, 1187.0},
                                         {1009, 1265.0},
                                         {1010, 1343.0},
                                         {1011, 1404.0},
                                         {1012, 1504.0},
                                         {1013, 1561.0},
                                         {1014, 1671.0},
                                         {1015, 1894.0}}};

int requestedVersion() {
  const char* text = std::getenv("KR_SYSTEM_VERSION");
  if (text == nullptr || *text == '\0') return kOffered;
  char* rest = nullptr;
  const long major = std::strtol(text, &rest, 10);
  const long minor = *rest == '.' ? std::strtol(rest + 1, nullptr, 10) : 0;
  return static_cast<int>(major * 100 + minor);
}

class OfferedLevel final : public SystemVersion {
 public:
  double appKitVersion() override {
    const int version = requestedVersion();
    double number = kLevels.front().appKit;
    for (const Level& level : kLevels) {
      if (level.version <= version) number = level.appKit;
    }
    return number;
  }
};

}  // namespace

SystemVersion& systemSystemVersion() noexcept {
  static OfferedLevel& level = *new OfferedLevel;
  return level;
}

}  // namespace kr::platform
