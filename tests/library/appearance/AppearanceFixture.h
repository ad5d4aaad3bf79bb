// Colours and views over a desktop, a system and a log in memory. No appearance is drawn in at the beginning.
#pragma once

#import <AppKit/AppKit.h>

#include <optional>

#include "tests/library/utilities/UtilitiesFixture.h"

namespace kr::testing {

constexpr double kHighSierra = 1561;

class AppearanceFixture : public UtilitiesFixture {
 protected:
  AppearanceFixture() {
    platform::Services set = platform::services();
    set.desktopAppearance = &desktop_;
    services_.emplace(set);
  }
  ~AppearanceFixture() override { [NSAppearance setCurrentAppearance:nil]; }

  // As if a view of the appearance drew.
  static void drawInLight() { drawIn(NSAppearanceNameAqua); }
  static void drawInDark() { drawIn(NSAppearanceNameDarkAqua); }
  static void drawIn(NSString* name) {
    [NSAppearance setCurrentAppearance:[NSAppearance appearanceNamed:name]];
  }

  platform::testing::FixedDesktopAppearance desktop_;

 private:
  std::optional<platform::ScopedServices> services_;
};

}  // namespace kr::testing
