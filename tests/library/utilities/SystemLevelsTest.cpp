#include "library/utilities/SystemLevels.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "platform/Services.h"
#include "platform/testing/FixedDesktop.h"

namespace kr {
namespace {

// What is true at a version of the application framework, right below it and right above it, and anywhere up
// to the next whole number.
struct Edge {
  SystemLevel level;
  double version;
  bool below;
  bool at;
  bool above;
  bool beforeTheNextNumber;
};

constexpr std::array<Edge, 12> kEdges{{{SystemLevel::pantherOrOlder, 743.0, true, true, true, true},
                                       {SystemLevel::leopardOrNewer, 824.0, false, false, false, false},
                                       {SystemLevel::snowleopardOrNewer, 1038.0, false, true, true, true},
                                       {SystemLevel::lionOrNewer, 1138.0, false, true, true, true},
                                       {SystemLevel::mountainLionOrNewer, 1187.0, false, true, true, true},
                                       {SystemLevel::mavericksOrNewer, 1265.0, false, true, true, true},
                                       {SystemLevel::yosemiteOrNewer, 1343.0, false, true, true, true},
                                       {SystemLevel::elCapitanOrNewer, 1404.0, false, true, true, true},
                                       {SystemLevel::sierraOrNewer, 1490.0, false, true, true, true},
                                       {SystemLevel::highSierraOrNewer, 1537.2, false, true, true, true},
                                       {SystemLevel::mojaveOrNewer, 1639.0, false, true, true, true},
                                       {SystemLevel::catalinaOrNewer, 1861.0, false, true, true, true}}};

TEST(SystemLevel, BeginsAndEndsExactlyAtItsVersion) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const Edge& edge : kEdges) {
    SCOPED_TRACE(edge.version);
    EXPECT_EQ(isOfLevel(edge.level, std::nextafter(edge.version, -kInfinity)), edge.below);
    EXPECT_EQ(isOfLevel(edge.level, edge.version), edge.at);
    EXPECT_EQ(isOfLevel(edge.level, std::nextafter(edge.version, kInfinity)), edge.above);
    EXPECT_EQ(isOfLevel(edge.level, std::floor(edge.version) + 0.99), edge.beforeTheNextNumber);
  }
}

TEST(SystemLevel, OfTheOldestLooksAtWholeNumbers) {
  EXPECT_FALSE(isOfLevel(SystemLevel::pantherOrOlder, 744.0));
  EXPECT_TRUE(isOfLevel(SystemLevel::pantherOrOlder, 743.99));
  EXPECT_FALSE(isOfLevel(SystemLevel::leopardOrNewer, 824.99));
  EXPECT_TRUE(isOfLevel(SystemLevel::leopardOrNewer, 825.0));
}

TEST(SystemLevel, OfHighSierraBeginsInTheMiddleOfANumber) {
  EXPECT_FALSE(isOfLevel(SystemLevel::highSierraOrNewer, 1537.0));
  EXPECT_FALSE(isOfLevel(SystemLevel::highSierraOrNewer, 1537.19));
  EXPECT_TRUE(isOfLevel(SystemLevel::highSierraOrNewer, 1537.2));
}

TEST(SystemLevel, IsThatOfTheSystemInForce) {
  platform::testing::FixedSystemVersion system;
  platform::Services set = platform::services();
  set.systemVersion = &system;
  const platform::ScopedServices scope(set);
  system.appKit = 1638.9;
  EXPECT_FALSE(isOfLevel(SystemLevel::mojaveOrNewer));
  system.appKit = 1639;
  EXPECT_TRUE(isOfLevel(SystemLevel::mojaveOrNewer));
}

}  // namespace
}  // namespace kr
