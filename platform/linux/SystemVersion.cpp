#include "platform/SystemVersion.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/Log.h"
#include "platform/SystemServices.h"

namespace kr::platform {
namespace {

struct Version {
  int major = 0;
  int minor = 0;
  int bugfix = 0;
};

// The Cocoa level that this port offers; KR_SYSTEM_VERSION ("10.13", "10.13.6") names another one, for
// support and tests.
constexpr Version kOffered{10, 15, 0};
constexpr const char* kVariable = "KR_SYSTEM_VERSION";
constexpr int kLargestNumber = 99;

struct Level {
  int version;  // major * 100 + minor
  double appKit;
};
constexpr std::array<Level, 14> kLevels{{{1003, 743.0},
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
                                         {1015, 1894.0},
                                         {1100, 2022.0}}};

// One to three numbers of at most two digits, with dots between them; the first of them is not 0.
std::optional<Version> parsed(std::string_view text) {
  std::array<int, 3> numbers{};
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), numbers[i]);
    if (error != std::errc() || numbers[i] < 0 || numbers[i] > kLargestNumber) return std::nullopt;
    text.remove_prefix(static_cast<std::size_t>(rest - text.data()));
    if (text.empty()) {
      if (numbers[0] == 0) return std::nullopt;
      return Version{numbers[0], numbers[1], numbers[2]};
    }
    if (text.front() != '.') return std::nullopt;
    text.remove_prefix(1);
  }
  return std::nullopt;
}

// Whoever names a version that is none hears of it once.
void complain(std::string_view text) {
  static std::mutex mutex;
  static std::string last;
  const std::lock_guard lock(mutex);
  if (text == last) return;
  last = text;
  log("%@ '%@' is not a version, %d.%d stays in force", kVariable, text, kOffered.major, kOffered.minor);
}

Version version() {
  const char* text = std::getenv(kVariable);
  if (text == nullptr || *text == '\0') return kOffered;
  const std::optional<Version> requested = parsed(text);
  if (!requested) complain(text);
  return requested.value_or(kOffered);
}

// The last two numbers have one digit each there.
std::int32_t packed(const Version& version) {
  const int minor = std::min(version.minor, 9);
  const int bugfix = std::min(version.bugfix, 9);
  return version.major / 10 << 12 | version.major % 10 << 8 | minor << 4 | bugfix;
}

class OfferedLevel final : public SystemVersion {
 public:
  std::optional<std::int32_t> part(VersionPart part) override {
    const Version offered = version();
    switch (part) {
      case VersionPart::major:
        return offered.major;
      case VersionPart::minor:
        return offered.minor;
      case VersionPart::bugfix:
        return offered.bugfix;
      case VersionPart::packed:
        return packed(offered);
    }
    return std::nullopt;
  }

  double appKitVersion() override {
    const Version offered = version();
    double number = kLevels.front().appKit;
    for (const Level& level : kLevels) {
      if (level.version <= offered.major * 100 + offered.minor) number = level.appKit;
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
