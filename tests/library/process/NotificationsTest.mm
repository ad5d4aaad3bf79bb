#include <algorithm>
#include <thread>

#import "library/process/IdlePosting.h"
#import "tests/library/process/ProcessFixture.h"
#import "tests/support/NotificationRecorder.h"
#import "tests/support/RunLoop.h"

namespace kr {
namespace {

using platform::kApplicationEnded;
using platform::kApplicationLaunched;
using platform::kFrontApplicationChanged;
using platform::SerialNumber;
using testing::eventuallyInRunLoop;
using testing::Lines;
using testing::NotificationRecorder;
using testing::ProcessFixture;
using testing::runLoop;

class Notifications : public ProcessFixture {
 protected:
  Notifications() { [KRProcess installNotifications]; }

  NotificationRecorder changes{KRProcessChangeNotification};
};

TEST_F(Notifications, AreInstalledOnce) {
  [KRProcess installNotifications];
  [KRProcess allProcesses];
  object({.pid = 10});
  EXPECT_EQ(processEvents().starts(), 1);
}

TEST_F(Notifications, TellOfALaunchAQuitAndAnotherFrontApplication) {
  for (const std::uint32_t kind : {kApplicationLaunched, kApplicationEnded, kFrontApplicationChanged}) {
    processEvents().send(kind);
    const NSUInteger before = changes.count();
    ASSERT_TRUE(eventuallyInRunLoop([&] { return changes.count() > before; }));
  }
  EXPECT_EQ(changes.values(@"change"), (Lines{"started", "ended", "front"}));
  NSNotification* first = [changes.notifications() objectAtIndex:0];
  EXPECT_EQ([first object], [KRProcess class]);
  EXPECT_EQ(toBytes([first name]), "KRProcessChangeNotification");
  EXPECT_EQ([[first userInfo] count], 1U);
}

TEST_F(Notifications, ASystemEventOfAnotherKindHasNoName) {
  processEvents().send(8);
  ASSERT_TRUE(eventuallyInRunLoop([&] { return changes.count() == 1; }));
  EXPECT_EQ(changes.values(@"change"), Lines{""});
  EXPECT_TRUE([[[[changes.notifications() objectAtIndex:0] userInfo] objectForKey:@"change"]
      isKindOfClass:[NSString class]]);
}

TEST_F(Notifications, TheKindsAreNumberedAsTheSystemNumbersThem) {
  EXPECT_EQ(kApplicationLaunched, 5U);
  EXPECT_EQ(kApplicationEnded, 6U);
  EXPECT_EQ(kFrontApplicationChanged, 7U);
}

TEST_F(Notifications, AreNeverPostedOutOfTheEventItself) {
  processEvents().send(kApplicationLaunched);
  EXPECT_EQ(changes.count(), 0U);
  EXPECT_TRUE(eventuallyInRunLoop([&] { return changes.count() == 1; }));
}

TEST_F(Notifications, ALaunchAndAQuitBeforeTheLoopIdlesAreOneNotificationTheFirst) {
  const unsigned before = [KRProcess applicationLaunchEndCount];
  processEvents().send(kApplicationLaunched);
  processEvents().send(kApplicationEnded);
  processEvents().send(kFrontApplicationChanged);
  runLoop(0.1);
  EXPECT_EQ(changes.values(@"change"), Lines{"started"});
  EXPECT_EQ([KRProcess applicationLaunchEndCount], before + 2);
  // Once it was posted the next one is queued again.
  processEvents().send(kApplicationEnded);
  runLoop(0.1);
  EXPECT_EQ(changes.values(@"change"), (Lines{"started", "ended"}));
}

TEST_F(Notifications, OnesThatComeWhileOneIsPostedAreNotLost) {
  changes.onNotification = [&](NSNotification*) {
    if (changes.count() == 1) processEvents().send(kFrontApplicationChanged);
  };
  processEvents().send(kApplicationLaunched);
  runLoop(0.1);
  EXPECT_EQ(changes.values(@"change"), (Lines{"started", "front"}));
}

TEST_F(Notifications, AnObserverThatRaisesDoesNotStopThem) {
  NotificationRecorder others(@"KRTestNotification");
  changes.onNotification = [&](NSNotification*) {
    if (changes.count() == 1) [NSException raise:@"Test" format:@"raised"];
  };
  processEvents().send(kApplicationLaunched);
  postWhenIdle(@"KRTestNotification", nil, nil);
  EXPECT_TRUE(eventuallyInRunLoop([&] { return others.count() == 1; }));
  processEvents().send(kApplicationEnded);
  runLoop(0.1);
  EXPECT_EQ(changes.values(@"change"), (Lines{"started", "ended"}));
}

TEST_F(Notifications, OnlyThoseOfOneNameAndOneObjectAreOne) {
  NSObject* one = [[[NSObject alloc] init] autorelease];
  NSObject* two = [[[NSObject alloc] init] autorelease];
  NotificationRecorder first(@"KRTestFirst");
  NotificationRecorder second(@"KRTestSecond");
  const auto post = [](NSString* name, id object, NSString* value) {
    postWhenIdle(name, object, [NSDictionary dictionaryWithObject:value forKey:@"value"]);
  };
  post(@"KRTestFirst", one, @"a");
  post(@"KRTestFirst", two, @"b");
  post(@"KRTestSecond", one, @"c");
  post(@"KRTestFirst", one, @"d");
  post(@"KRTestSecond", nil, @"e");
  post(@"KRTestSecond", nil, @"f");
  runLoop(0.1);
  EXPECT_EQ(first.values(@"value"), (Lines{"a", "b"}));
  EXPECT_EQ(second.values(@"value"), (Lines{"c", "e"}));
}

TEST_F(Notifications, WaitWhileTheLoopRunsInAnotherMode) {
  processEvents().send(kApplicationLaunched);
  [[NSRunLoop mainRunLoop] runMode:NSModalPanelRunLoopMode
                        beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.1]];
  EXPECT_EQ(changes.count(), 0U);
  EXPECT_TRUE(eventuallyInRunLoop([&] { return changes.count() == 1; }));
}

TEST_F(Notifications, EachQuitCleansUpAndCountsALaunchOnlyCountsAndAFrontSwitchDoesNeither) {
  KRProcess* process = object({.pid = 10});
  const SerialNumber serial = [process serialNumber];
  table.end(serial);
  const unsigned before = [KRProcess applicationLaunchEndCount];
  processEvents().send(kFrontApplicationChanged);
  processEvents().send(99);
  EXPECT_EQ([KRProcess applicationLaunchEndCount], before);
  processEvents().send(kApplicationLaunched);
  EXPECT_EQ([KRProcess applicationLaunchEndCount], before + 1);
  EXPECT_EQ([KRProcess cachedProcessWithSerialNumber:serial], process);
  processEvents().send(kApplicationEnded);
  EXPECT_EQ([KRProcess applicationLaunchEndCount], before + 2);
  EXPECT_TRUE([KRProcess cachedProcessWithSerialNumber:serial] == nil);
}

TEST_F(Notifications, TheSystemLearnsOfEveryProcessThatIsLookedUp) {
  const SerialNumber one = table.add({.pid = 10});
  const SerialNumber two = table.add({.pid = 11});
  [KRProcess processWithPID:10];
  [KRProcess allProcesses];
  [KRProcess allProcesses];
  const std::vector<SerialNumber> learned = processEvents().learned();
  EXPECT_EQ(std::count(learned.begin(), learned.end(), one), 1);
  EXPECT_EQ(std::count(learned.begin(), learned.end(), two), 1);
}

// A program of its own for each: whether something was installed before would make no difference else.
class Installation : public ProcessFixture {};

TEST_F(Installation, ByAnObjectOfItsOwn) {
  if (processEvents().starts() > 0) GTEST_SKIP() << "installed by another test of this program";
  [[[KRProcess alloc] initWithSerialNumber:{1, 1}] release];
  EXPECT_EQ(processEvents().starts(), 1);
}

TEST_F(Installation, OnAnotherThreadIsLeftToTheMainThread) {
  if (processEvents().starts() > 0) GTEST_SKIP() << "installed by another test of this program";
  std::thread([] {
    GSRegisterCurrentThread();
    @autoreleasepool {
      [KRProcess allProcesses];
    }
    GSUnregisterCurrentThread();
  }).join();
  EXPECT_EQ(processEvents().starts(), 0);
  EXPECT_TRUE(eventuallyInRunLoop([&] { return processEvents().starts() == 1; }));
}

}  // namespace
}  // namespace kr
