#include "platform/DoNotDisturb.h"

#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/SystemServices.h"
#include "tests/support/DefaultsOnTheDisk.h"
#include "tests/support/Desktop.h"
#include "tests/support/Eventually.h"
#include "tests/support/Forked.h"

namespace kr::platform {
namespace {

// Over the domain that the desktop's own program would write.
class DoNotDisturbDefaults : public kr::testing::DefaultsOnTheDisk {
 protected:
  ~DoNotDisturbDefaults() override {
    set(nil);
    [pool_ release];
  }

  static void set(NSDictionary* values) {
    NSUserDefaults* defaults = [NSUserDefaults standardUserDefaults];
    if (values == nil) {
      [defaults removePersistentDomainForName:kDomain];
    } else {
      [defaults setPersistentDomain:values forName:kDomain];
    }
    [defaults synchronize];
  }

  static std::optional<std::pair<std::int64_t, std::int64_t>> schedule() {
    const auto period = systemDoNotDisturb().schedule();
    if (!period) return std::nullopt;
    return std::pair(period->start, period->end);
  }

 private:
  static inline NSString* const kDomain = @"com.apple.notificationcenterui";
  // What the user of this machine has chosen is kept out.
  const kr::testing::ScopedVariable backend_{"GSETTINGS_BACKEND", "memory"};
  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
};

TEST_F(DoNotDisturbDefaults, NothingIsSetWithoutThem) {
  EXPECT_FALSE(systemDoNotDisturb().isOn());
  EXPECT_EQ(schedule(), std::nullopt);
}

TEST_F(DoNotDisturbDefaults, TheWishIsABoolean) {
  for (id yes in @[ [NSNumber numberWithBool:YES], @1, @"YES", @"true" ]) {
    set(@{@"doNotDisturb" : yes});
    EXPECT_TRUE(systemDoNotDisturb().isOn()) << [[yes description] UTF8String];
  }
  for (id no in @[ [NSNumber numberWithBool:NO], @0, @"NO", @"", @[ @1 ], [NSDate date] ]) {
    set(@{@"doNotDisturb" : no});
    EXPECT_FALSE(systemDoNotDisturb().isOn()) << [[no description] UTF8String];
  }
}

TEST_F(DoNotDisturbDefaults, ThePeriodHasTwoIntegers) {
  set(@{@"dndStart" : @1320, @"dndEnd" : @"420"});
  EXPECT_EQ(schedule(), std::pair(1320L, 420L));
  set(@{@"dndStart" : @-60, @"dndEnd" : @60.9});
  EXPECT_EQ(schedule(), std::pair(-60L, 60L));
  set(@{@"dndStart" : @1320});
  EXPECT_EQ(schedule(), std::nullopt);
  set(@{@"dndEnd" : @420});
  EXPECT_EQ(schedule(), std::nullopt);
  set(@{@"dndStart" : @[ @1320 ], @"dndEnd" : @420});
  EXPECT_EQ(schedule(), std::nullopt) << "a list is no integer";
}

TEST_F(DoNotDisturbDefaults, AreFollowedWhileTheProgramRuns) {
  const std::string domain = "com.apple.notificationcenterui";
  EXPECT_FALSE(systemDoNotDisturb().isOn());
  write(domain, "doNotDisturb", "YES");
  EXPECT_TRUE(kr::testing::eventually([] { return systemDoNotDisturb().isOn(); }));
  write(domain, "dndStart", "1320");
  write(domain, "dndEnd", "420");
  EXPECT_TRUE(kr::testing::eventually([] { return schedule() == std::pair(1320L, 420L); }));
  write(domain, "doNotDisturb", "NO");
  EXPECT_TRUE(kr::testing::eventually([] { return !systemDoNotDisturb().isOn(); }));
}

// Whether it is on where the desktop has a schema with this one key, or none; in a process of its own, as
// GLib reads the schemas once. 98 where the schema cannot be made.
int isOnWith(const std::string& key) {
  const kr::testing::ScratchFolder folder;
  if (!key.empty()) {
    std::ofstream(folder / "desktop.gschema.xml")
        << "<schemalist><schema id='org.gnome.desktop.notifications' "
           "path='/org/gnome/desktop/notifications/'>"
        << key << "</schema></schemalist>";
  }
  const auto status = kr::testing::inChild([&] {
    ::setenv("XDG_DATA_DIRS", folder.path().c_str(), 1);
    ::setenv("XDG_DATA_HOME", folder.path().c_str(), 1);
    ::setenv("GSETTINGS_BACKEND", "memory", 1);
    if (!key.empty()) {
      ::setenv("GSETTINGS_SCHEMA_DIR", folder.path().c_str(), 1);
      if (std::system(("glib-compile-schemas --strict " + folder.path()).c_str()) != 0) return 98;
    }
    return systemDoNotDisturb().isOn() ? 1 : 0;
  });
  return WIFEXITED(status) ? WEXITSTATUS(status) : 99;
}

TEST(DoNotDisturbOfTheDesktop, IsOnWhenItShowsNoBanners) {
  EXPECT_EQ(isOnWith("<key name='show-banners' type='b'><default>false</default></key>"), 1);
  EXPECT_EQ(isOnWith("<key name='show-banners' type='b'><default>true</default></key>"), 0);
}

TEST(DoNotDisturbOfTheDesktop, IsOffOnDesktopsWithoutTheSetting) {
  EXPECT_EQ(isOnWith(""), 0);
  EXPECT_EQ(isOnWith("<key name='show-in-lock-screen' type='b'><default>false</default></key>"), 0);
}

}  // namespace
}  // namespace kr::platform
