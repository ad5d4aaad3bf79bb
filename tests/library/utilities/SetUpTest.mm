// How the class of utilities sets itself up. That happens once in a process: CTest runs every case as a
// process of its own.
#import "library/utilities/KRUtilities.h"

#import "library/process/KRProcess.h"
#import "platform/cocoa/Bridging.h"
#import "tests/library/utilities/UtilitiesFixture.h"

namespace kr::testing {
namespace {

int gSwitches;
int gThemeChanges;

void noteSwitch(Class, SEL, NSNotification*) {
  ++gSwitches;
}

void noteThemeChange(Class, SEL, NSNotification*) {
  ++gThemeChanges;
}

NSNotificationCenter* noCenter(Class, SEL) {
  [NSException raise:NSInternalInconsistencyException format:@"no server"];
  return nil;
}

class UtilitiesSetUp : public UtilitiesFixture {
 protected:
  // The class itself, without a message to it.
  static Class utilities() { return objc_getClass("KRUtilities"); }

  static void post(NSNotificationCenter* center, NSString* name) {
    [center postNotificationName:name object:nil];
  }

  static void run(double seconds) {
    [[NSRunLoop currentRunLoop] runUntilDate:[NSDate dateWithTimeIntervalSinceNow:seconds]];
  }
};

TEST_F(UtilitiesSetUp, HappensOnFirstUseAndOnce) {
  EXPECT_EQ(log_.lines(), Lines{});
  [KRUtilities plainVersionOf:@""];
  EXPECT_EQ(log_.lines(), Lines{"**Utilities initialized"});
  [KRUtilities initialize];
  EXPECT_EQ(log_.lines(), Lines{"**Utilities initialized"});
}

TEST_F(UtilitiesSetUp, WatchesTheThemeAtOnce) {
  const auto hook = ReplacedMethod::ofClass(utilities(), @selector(darkModeChanged:), noteThemeChange);
  post(ownCenter(nil, nullptr), @"AppleInterfaceThemeChangedNotification");
  EXPECT_EQ(gThemeChanges, 0);
  [KRUtilities plainVersionOf:@""];
  post(ownCenter(nil, nullptr), @"AppleInterfaceThemeChangedNotification");
  EXPECT_EQ(gThemeChanges, 1);
  post(ownCenter(nil, nullptr), @"AnotherNotification");
  EXPECT_EQ(gThemeChanges, 1);
}

TEST_F(UtilitiesSetUp, WatchesTheProgramInFrontASecondLater) {
  const auto hook = ReplacedMethod::ofClass(utilities(), @selector(processSwitched:), noteSwitch);
  NSNotificationCenter* center = [NSNotificationCenter defaultCenter];
  [KRUtilities plainVersionOf:@""];
  run(0.6);
  post(center, @"KRProcessChangeNotification");
  EXPECT_EQ(gSwitches, 0);
  run(0.6);
  post(center, @"KRProcessChangeNotification");
  EXPECT_EQ(gSwitches, 1);
}

TEST_F(UtilitiesSetUp, ThatFailsIsLoggedAndMayBeTriedAgain) {
  {
    const auto failing =
        ReplacedMethod::ofClass([NSDistributedNotificationCenter class], @selector(defaultCenter), noCenter);
    [KRUtilities plainVersionOf:@""];
  }
  ASSERT_EQ(log_.lines().size(), 1U);
  EXPECT_TRUE(log_.lines().front().starts_with("EXCEPTION @ initialize: ")) << log_.lines().front();
  EXPECT_NE(log_.lines().front().find("no server"), std::string::npos);
  [KRUtilities initialize];
  EXPECT_EQ(log_.lines().back(), "**Utilities initialized");
}

}  // namespace
}  // namespace kr::testing
