#import "tests/library/process/ProcessFixture.h"
#import "tests/support/NotificationRecorder.h"
#import "tests/support/RunLoop.h"

namespace kr {
namespace {

using testing::eventuallyInRunLoop;
using testing::Lines;
using testing::NotificationRecorder;
using testing::ProcessFixture;
using testing::runLoop;

class Accessibility : public ProcessFixture {
 protected:
  const platform::SerialNumber serial = table.add({.pid = 10, .signature = 'ABCD', .name = "Product"});
  KRProcess* process = [KRProcess processWithSerialNumber:serial];
  NotificationRecorder notifications{KRProcessUINotification};
};

constexpr const char* kNotAdded =
    "AX Notifications: Could not add notification window:create for Process \"Product\" (ABCD) 1.0";

TEST_F(Accessibility, AnObserverIsMadeOnce) {
  [process installAXObserver];
  [process installAXObserver];
  [process addAXNotification:@"window:create"];
  EXPECT_EQ(accessibility.calls, (Lines{"application 10", "observe 10", "add window:create"}));
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(Accessibility, AnEventIsPostedWithElementAndName) {
  [process addAXNotification:@"window:create"];
  NSObject* element = [[[NSObject alloc] init] autorelease];
  accessibility.send(10, "window:create", element);
  EXPECT_EQ(notifications.count(), 0U) << "out of the idle loop only";
  ASSERT_TRUE(eventuallyInRunLoop([&] { return notifications.count() == 1; }));
  NSNotification* notification = [notifications.notifications() objectAtIndex:0];
  EXPECT_EQ(toBytes([notification name]), "KRProcessUINotification");
  EXPECT_EQ([notification object], process);
  EXPECT_EQ([[notification userInfo] count], 2U);
  EXPECT_EQ([[notification userInfo] objectForKey:@"element"], element);
  EXPECT_EQ(notifications.values(@"event"), Lines{"window:create"});
}

TEST_F(Accessibility, AnEventWithoutElementHasTheEmptyText) {
  [process addAXNotification:@"window:create"];
  accessibility.send(10, "window:create", nullptr);
  ASSERT_TRUE(eventuallyInRunLoop([&] { return notifications.count() == 1; }));
  EXPECT_EQ(notifications.values(@"element"), Lines{""});
  id element = [[[notifications.notifications() objectAtIndex:0] userInfo] objectForKey:@"element"];
  EXPECT_TRUE([element isKindOfClass:[NSString class]]);
}

TEST_F(Accessibility, OfSeveralEventsOfAProcessTheFirstIsPostedAndThoseOfAnotherStandForThemselves) {
  KRProcess* other = object({.pid = 11});
  for (KRProcess *each in [NSArray arrayWithObjects:process, other, nil]) {
    [each addAXNotification:@"window:create"];
    [each addAXNotification:@"window:destroy"];
  }
  accessibility.send(10, "window:create", nullptr);
  accessibility.send(11, "window:destroy", nullptr);
  accessibility.send(10, "window:destroy", nullptr);
  runLoop(0.1);
  EXPECT_EQ(notifications.values(@"event"), (Lines{"window:create", "window:destroy"}));
  EXPECT_EQ([[notifications.notifications() objectAtIndex:0] object], process);
  EXPECT_EQ([[notifications.notifications() objectAtIndex:1] object], other);
}

TEST_F(Accessibility, WithoutAnApplicationElementBothFailuresAreLoggedEachTime) {
  accessibility.hasElements = false;
  [process addAXNotification:@"window:create"];
  [process addAXNotification:@"window:create"];
  const std::string noElement =
      "AX Notifications: Could not create application object for Process \"Product\" (ABCD) 1.0";
  EXPECT_EQ(log.lines(), (Lines{noElement, kNotAdded, noElement, kNotAdded}));
}

TEST_F(Accessibility, WithoutAnObserverThatIsLoggedOnceAndEachNotificationThatCouldNotBeAdded) {
  accessibility.hasObservers = false;
  [process addAXNotification:@"window:create"];
  [process addAXNotification:@"window:create"];
  EXPECT_EQ(log.lines(),
            (Lines{"AX Notifications: Could not create observer for Process \"Product\" (ABCD) 1.0",
                   kNotAdded, kNotAdded}));
  // Nothing tries again, also when it could be had by now.
  accessibility.hasObservers = true;
  [process addAXNotification:@"window:create"];
  EXPECT_EQ(accessibility.calls, (Lines{"application 10", "observe 10"}));
}

TEST_F(Accessibility, ANotificationThatIsRefusedIsLogged) {
  accessibility.refused = {"window:create"};
  [process addAXNotification:@"window:create"];
  EXPECT_EQ(log.lines(), Lines{kNotAdded});
  [process addAXNotification:@"window:destroy"];
  EXPECT_EQ(log.lines(), Lines{kNotAdded});
}

TEST_F(Accessibility, AProcessThatHasEndedHasNoElement) {
  table.end(serial);
  [process installAXObserver];
  EXPECT_EQ(log.lines(),
            Lines{"AX Notifications: Could not create application object for Process \"(null)\" () 1.0"});
}

TEST_F(Accessibility, RemovingBeforeThereIsAnObserverDoesNothing) {
  [process removeAXNotification:@"window:create"];
  EXPECT_TRUE(accessibility.calls.empty());
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(Accessibility, ARemovedNotificationIsToldNoMore) {
  [process addAXNotification:@"window:create"];
  [process removeAXNotification:@"window:create"];
  accessibility.send(10, "window:create", nullptr);
  runLoop(0.1);
  EXPECT_EQ(notifications.count(), 0U);
  EXPECT_EQ(accessibility.calls.back(), "remove window:create");
}

TEST_F(Accessibility, UnregisteringEndsTheObserverAndAnotherOneCanBeMade) {
  [process addAXNotification:@"window:create"];
  [process unregisterAXNotifications];
  [process unregisterAXNotifications];
  EXPECT_EQ(accessibility.calls.back(), "end 10");
  accessibility.send(10, "window:create", nullptr);
  runLoop(0.1);
  EXPECT_EQ(notifications.count(), 0U);
  [process removeAXNotification:@"window:create"];
  accessibility.calls.clear();
  [process addAXNotification:@"window:destroy"];
  EXPECT_EQ(accessibility.calls, (Lines{"application 10", "observe 10", "add window:destroy"}));
}

TEST_F(Accessibility, UnregisteringAfterAFailureLetsItBeTriedAgain) {
  accessibility.hasObservers = false;
  [process installAXObserver];
  [process unregisterAXNotifications];
  accessibility.hasObservers = true;
  [process addAXNotification:@"window:create"];
  EXPECT_EQ(log.lines().size(), 1U);
  EXPECT_EQ(accessibility.calls.back(), "add window:create");
}

TEST_F(Accessibility, TheObserverEndsWithTheObject) {
  @autoreleasepool {
    KRProcess* apart = [[KRProcess alloc] initWithSerialNumber:serial];
    [apart addAXNotification:@"window:create"];
    accessibility.calls.clear();
    [apart release];
  }
  EXPECT_EQ(accessibility.calls, Lines{"end 10"});
}

TEST_F(Accessibility, AnEventThatWaitsToBePostedKeepsTheObject) {
  KRProcess* apart = [[KRProcess alloc] initWithSerialNumber:serial];
  @autoreleasepool {
    [apart addAXNotification:@"window:create"];
    accessibility.send(10, "window:create", nullptr);
    [apart release];
  }
  ASSERT_TRUE(eventuallyInRunLoop([&] { return notifications.count() == 1; }));
  EXPECT_EQ([[notifications.notifications() objectAtIndex:0] object], apart);
}

}  // namespace
}  // namespace kr
