#include "library/utilities/SystemLevels.h"

#include <array>
#include <cmath>
#include <cstddef>

#include "platform/Services.h"
#include "platform/SystemVersion.h"

namespace kr {
namespace {

enum class Comparison { atMost, above, atLeast };

// The oldest levels look at the whole number only, the others at all of it.
struct Rule {
  SystemLevel level;
  bool rounded;
  Comparison comparison;
  double threshold;
};

constexpr std::array<Rule, 12> kRules{{{SystemLevel::pantherOrOlder, true, Comparison::atMost, 743.0},
                                       {SystemLevel::leopardOrNewer, true, Comparison::above, 824.0},
                                       {SystemLevel::snowleopardOrNewer, true, Comparison::atLeast, 1038.0},
                                       {SystemLevel::lionOrNewer, false, Comparison::atLeast, 1138.0},
                                       {SystemLevel::mountainLionOrNewer, false, Comparison::atLeast, 1187.0},
                                       {SystemLevel::mavericksOrNewer, false, Comparison::atLeast, 1265.0},
                                       {SystemLevel::yosemiteOrNewer, false, Comparison::atLeast, 1343.0},
                                       {SystemLevel::elCapitanOrNewer, false, Comparison::atLeast, 1404.0},
                                       {SystemLevel::sierraOrNewer, false, Comparison::atLeast, 1490.0},
                                       {SystemLevel::highSierraOrNewer, false, Comparison::atLeast, 1537.2},
                                       {SystemLevel::mojaveOrNewer, false, Comparison::atLeast, 1639.0},
                                       {SystemLevel::catalinaOrNewer, false, Comparison::atLeast, 1861.0}}};

constexpr bool standInTheOrderOfTheLevels() {
  for (std::size_t i = 0; i < kRules.size(); ++i) {
    if (static_cast<std::size_t>(kRules[i].level) != i) return false;
  }
  return true;
}
static_assert(standInTheOrderOfTheLevels());

}  // namespace

bool isOfLevel(SystemLevel level, double appKitVersion) noexcept {
  const Rule& rule = kRules[static_cast<std::size_t>(level)];
  const double version = rule.rounded ? std::floor(appKitVersion) : appKitVersion;
  switch (rule.comparison) {
    case Comparison::atMost:
      return version <= rule.threshold;
    case Comparison::above:
      return version > rule.threshold;
    case Comparison::atLeast:
      return version >= rule.threshold;
  }
  return false;
}

bool isOfLevel(SystemLevel level) {
  return isOfLevel(level, platform::services().systemVersion->appKitVersion());
}

}  // namespace kr
