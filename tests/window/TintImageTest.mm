// The images that the bundle carries for the user's tint of controls.
#include <set>

#import "library/utilities/KRUtilities.h"
#import "platform/cocoa/Bridging.h"
#include "platform/testing/FixedDesktop.h"
#include "tests/support/ReplacedMethod.h"
#import "tests/window/WindowTest.h"

namespace kr::testing {
namespace {

NSControlTint gTint = NSBlueControlTint;

NSControlTint tint(Class, SEL) {
  return gTint;
}

class TintImage : public WindowTest {
 protected:
  TintImage() : tint_(ReplacedMethod::ofClass([NSColor class], @selector(currentControlTint), tint)) {
    platform::Services set = platform::services();
    set.systemVersion = &system_;
    set.desktopAppearance = &appearance_;
    scope_.emplace(set);
  }
  ~TintImage() override { scope_.reset(); }

  // The colour in the middle of the image below its mark.
  static std::string body(NSImage* image) {
    NSBitmapImageRep* pixels = [NSBitmapImageRep imageRepWithData:[image TIFFRepresentation]];
    NSColor* color = [[pixels colorAtX:[pixels pixelsWide] / 2 y:[pixels pixelsHigh] * 3 / 4]
        colorUsingColorSpaceName:NSCalibratedRGBColorSpace];
    return toBytes([color description]);
  }

  platform::testing::FixedSystemVersion system_;
  platform::testing::FixedDesktopAppearance appearance_;

 private:
  ReplacedMethod tint_;
  std::optional<platform::ScopedServices> scope_;
};

TEST_F(TintImage, ThereIsOneForEachLookAndTint) {
  constexpr double kMavericks = 1265;
  constexpr double kMojave = 1639;
  std::set<std::string> bodies;
  for (const double level : {kMavericks, kMojave}) {
    for (const bool dark : {false, true}) {
      if (level == kMavericks && dark) continue;
      for (const NSControlTint color : {NSBlueControlTint, NSGraphiteControlTint}) {
        system_.appKit = level;
        appearance_.dark = dark;
        gTint = color;
        NSImage* image = [KRUtilities systemTintImage];
        ASSERT_NE(image, nil) << level << dark << color;
        EXPECT_EQ([image size].width, 32);
        EXPECT_EQ([image size].height, 32);
        bodies.insert(body(image));
      }
    }
  }
  EXPECT_EQ(bodies.size(), 6U) << "six images, each of its own colour";
}

TEST_F(TintImage, EveryTintButBlueIsGraphite) {
  gTint = NSClearControlTint;
  NSImage* image = [KRUtilities systemTintImage];
  gTint = NSGraphiteControlTint;
  EXPECT_EQ(image, [KRUtilities systemTintImage]);
}

}  // namespace
}  // namespace kr::testing
