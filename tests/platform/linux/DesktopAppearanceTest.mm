// The user's choice of light or dark as other programs write it.
#include "platform/DesktopAppearance.h"

#import <Foundation/Foundation.h>

#include "platform/SystemServices.h"
#include "tests/support/DefaultsOnTheDisk.h"
#include "tests/support/Eventually.h"

namespace kr::platform {
namespace {

using kr::testing::eventually;

const std::string kGlobal = "NSGlobalDomain";
const std::string kStyle = "AppleInterfaceStyle";

class DesktopAppearanceOnTheDisk : public kr::testing::DefaultsOnTheDisk {
 protected:
  DesktopAppearanceOnTheDisk() : pool_([[NSAutoreleasePool alloc] init]) {}
  ~DesktopAppearanceOnTheDisk() override { [pool_ release]; }

 private:
  NSAutoreleasePool* pool_;
};

TEST_F(DesktopAppearanceOnTheDisk, IsFollowedWhileTheProgramRuns) {
  DesktopAppearance& appearance = systemDesktopAppearance();
  EXPECT_FALSE(appearance.isDark());
  write(kGlobal, "AnotherKey", "kept");
  write(kGlobal, kStyle, "Dark");
  EXPECT_TRUE(eventually([&] { return appearance.isDark(); }));
  write(kGlobal, kStyle, "Light");
  EXPECT_TRUE(eventually([&] { return !appearance.isDark(); }));
  write(kGlobal, kStyle, "Dark");
  EXPECT_TRUE(eventually([&] { return appearance.isDark(); }));
  remove(kGlobal, kStyle);
  EXPECT_TRUE(eventually([&] { return !appearance.isDark(); }));
}

}  // namespace
}  // namespace kr::platform
