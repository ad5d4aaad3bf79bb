#include "library/utilities/TintImageName.h"

#include <gtest/gtest.h>

#include "platform/Services.h"
#include "platform/testing/FixedDesktop.h"

namespace kr {
namespace {

TEST(TintImageName, IsOfTheSystemsLookAndTheTint) {
  platform::testing::FixedSystemVersion system;
  platform::testing::FixedDesktopAppearance appearance;
  platform::Services set = platform::services();
  set.systemVersion = &system;
  set.desktopAppearance = &appearance;
  const platform::ScopedServices scope(set);
  struct Row {
    double appKit;
    bool dark;
    bool blue;
    const char* name;
  };
  constexpr double kMavericks = 1265;
  constexpr double kYosemite = 1343;
  constexpr double kMojave = 1639;
  for (const Row& row :
       {Row{kMavericks, false, true, "tintMavBlue"}, Row{kMavericks, false, false, "tintMavGraphite"},
        Row{kMavericks, true, true, "tintMavBlue"}, Row{kMavericks, true, false, "tintMavGraphite"},
        Row{kYosemite, false, true, "tintYosBlue"}, Row{kYosemite, false, false, "tintYosGraphite"},
        Row{kYosemite, true, true, "tintYosDarkBlue"}, Row{kYosemite, true, false, "tintYosDarkGraphite"},
        Row{kMojave, true, false, "tintYosDarkGraphite"}}) {
    system.appKit = row.appKit;
    appearance.dark = row.dark;
    EXPECT_EQ(tintImageName(row.blue), row.name) << row.appKit << row.dark << row.blue;
  }
}

}  // namespace
}  // namespace kr
