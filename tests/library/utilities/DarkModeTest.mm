#import "library/utilities/KRUtilities.h"

#include "platform/SystemServices.h"
#import "tests/library/utilities/UtilitiesFixture.h"
#include "tests/support/Desktop.h"

namespace kr::testing {
namespace {

NSString* const kStyle = @"AppleInterfaceStyle";
constexpr double kMavericks = 1265;
constexpr double kYosemite = 1343;
constexpr double kHighSierra = 1561;
constexpr double kMojave = 1639;

// Over the user defaults of the program.
class DarkMode : public UtilitiesFixture {
 protected:
  DarkMode() {
    platform::Services set = platform::services();
    set.desktopAppearance = &platform::systemDesktopAppearance();
    services_.emplace(set);
  }
  ~DarkMode() override { choose(nil); }

  // For this program alone, and not on the disk.
  static void choose(id style) {
    NSUserDefaults* defaults = [NSUserDefaults standardUserDefaults];
    [defaults removeVolatileDomainForName:NSArgumentDomain];
    if (style != nil) [defaults setVolatileDomain:@{kStyle : style} forName:NSArgumentDomain];
  }

 private:
  // The one of whoever runs the test may be dark.
  const Desktop noDesktop_{{.display = false}};
  std::optional<platform::ScopedServices> services_;
};

TEST_F(DarkMode, IsOnWhenTheStyleIsDarkOnly) {
  EXPECT_FALSE([KRUtilities darkMenuTheme]) << "no style";
  EXPECT_FALSE([KRUtilities darkAppearance]) << "no style";
  choose(@"Dark");
  EXPECT_TRUE([KRUtilities darkMenuTheme]);
  EXPECT_TRUE([KRUtilities darkAppearance]);
  for (id other in @[ @"Light", @"dark", @"", @"Darker", [NSNumber numberWithBool:YES], @[ @"Dark" ] ]) {
    choose(other);
    EXPECT_FALSE([KRUtilities darkMenuTheme]) << [[other description] UTF8String];
    EXPECT_FALSE([KRUtilities darkAppearance]) << [[other description] UTF8String];
  }
}

TEST_F(DarkMode, IsOfMenusSinceYosemite) {
  choose(@"Dark");
  for (const double older : {kMavericks, kYosemite - 0.5}) {
    system_.appKit = older;
    EXPECT_FALSE([KRUtilities darkMenuTheme]) << older;
    EXPECT_FALSE([KRUtilities darkAppearance]) << older;
  }
  system_.appKit = kYosemite;
  EXPECT_TRUE([KRUtilities darkMenuTheme]);
}

TEST_F(DarkMode, IsOfEverythingSinceMojave) {
  choose(@"Dark");
  for (const double older : {kYosemite, kHighSierra, kMojave - 0.5}) {
    system_.appKit = older;
    EXPECT_TRUE([KRUtilities darkMenuTheme]) << older;
    EXPECT_FALSE([KRUtilities darkAppearance]) << older;
  }
  system_.appKit = kMojave;
  EXPECT_TRUE([KRUtilities darkAppearance]);
}

}  // namespace
}  // namespace kr::testing
