#import "tests/library/process/ProcessFixture.h"

#include <atomic>
#include <thread>

namespace kr {
namespace {

using platform::SerialNumber;
using testing::ProcessFixture;

// Each test starts with an empty cache: the processes of the tests before have ended.
class Cache : public ProcessFixture {
 protected:
  Cache() { [KRProcess cleanupCache]; }

  static NSArray* entries() { return [[KRProcess cachedProcessesEnumerator] allObjects]; }
};

TEST_F(Cache, ANewObjectStandsInFront) {
  KRProcess* one = object({.pid = 10});
  KRProcess* two = object({.pid = 11});
  EXPECT_TRUE(([entries() isEqual:[NSArray arrayWithObjects:two, one, nil]]));
  EXPECT_EQ([KRProcess indexOfCachedProcessWithSerialNumber:[two serialNumber]], 0U);
  EXPECT_EQ([KRProcess indexOfCachedProcessWithSerialNumber:[one serialNumber]], 1U);
}

TEST_F(Cache, ALookupMovesAnOlderEntryToTheFrontAndKeepsTheOrderOfTheOthers) {
  KRProcess* one = object({.pid = 10});
  KRProcess* two = object({.pid = 11});
  KRProcess* three = object({.pid = 12});
  EXPECT_EQ([KRProcess cachedProcessWithSerialNumber:[one serialNumber]], one);
  EXPECT_TRUE(([entries() isEqual:[NSArray arrayWithObjects:one, three, two, nil]]));
  EXPECT_EQ([KRProcess cachedProcessWithSerialNumber:[one serialNumber]], one);
  EXPECT_TRUE(([entries() isEqual:[NSArray arrayWithObjects:one, three, two, nil]]));
}

TEST_F(Cache, AnIndexIsAskedForWithoutMovingTheEntry) {
  KRProcess* one = object({.pid = 10});
  KRProcess* two = object({.pid = 11});
  EXPECT_EQ([KRProcess indexOfCachedProcessWithSerialNumber:[one serialNumber]], 1U);
  EXPECT_TRUE(([entries() isEqual:[NSArray arrayWithObjects:two, one, nil]]));
}

TEST_F(Cache, WhatIsNotInItIsNotFound) {
  const SerialNumber serial = table.add({.pid = 10});
  EXPECT_EQ([KRProcess indexOfCachedProcessWithSerialNumber:serial], 0x7FFFFFFFFFFFFFFFULL);
  EXPECT_TRUE([KRProcess cachedProcessWithSerialNumber:serial] == nil);
  KRProcess* apart = [[[KRProcess alloc] initWithSerialNumber:serial] autorelease];
  EXPECT_TRUE([KRProcess cachedProcessWithSerialNumber:serial] == nil);
  [apart addToCache];
  EXPECT_EQ([KRProcess cachedProcessWithSerialNumber:serial], apart);
}

TEST_F(Cache, AnObjectStaysAfterItsProcessHasEndedUntilTheNextCleanUp) {
  KRProcess* one = object({.pid = 10, .name = "One"});
  KRProcess* two = object({.pid = 11});
  EXPECT_EQ(toBytes([one name]), "One");
  table.end([one serialNumber]);
  EXPECT_EQ([KRProcess processWithSerialNumber:[one serialNumber]], one);
  EXPECT_EQ(toBytes([one name]), "One");
  [KRProcess cleanupCache];
  EXPECT_TRUE([KRProcess cachedProcessWithSerialNumber:[one serialNumber]] == nil);
  EXPECT_TRUE([entries() isEqual:[NSArray arrayWithObject:two]]);
}

TEST_F(Cache, CleanUpRemovesNeighboursThatHaveEnded) {
  KRProcess* kept[] = {object({.pid = 10}), nil, nil, object({.pid = 13})};
  kept[1] = object({.pid = 11});
  kept[2] = object({.pid = 12});
  table.endPID(11);
  table.endPID(12);
  table.endPID(13);
  [KRProcess cleanupCache];
  EXPECT_TRUE([entries() isEqual:[NSArray arrayWithObject:kept[0]]]);
}

TEST_F(Cache, IsEmptyAndNotAbsentWhenEveryProcessHasEnded) {
  const SerialNumber serial = [object({.pid = 10}) serialNumber];
  table.end(serial);
  [KRProcess cleanupCache];
  EXPECT_TRUE([KRProcess cachedProcessesEnumerator] != nil);
  EXPECT_EQ([entries() count], 0U);
}

TEST_F(Cache, LetsGoOfAnObjectAndAllItHasKept) {
  const SerialNumber serial = table.add({.pid = 10, .name = "A", .path = "/x", .userTime = "0:01.00"});
  NSObject* attached = [[[NSObject alloc] init] autorelease];
  @autoreleasepool {
    KRProcess* process = [KRProcess processWithSerialNumber:serial];
    [process setInfo:attached];
    EXPECT_EQ([attached retainCount], 2U);
    [process name];
    [process path];
    [process version];
    [process displayName];
    [process launchDate];
    table.end(serial);
    [KRProcess cleanupCache];
    EXPECT_EQ([attached retainCount], 2U) << "the caller still uses the object";
  }
  EXPECT_EQ([attached retainCount], 1U);
}

TEST_F(Cache, AQuitCleansUpAndCountsAndALaunchOnlyCounts) {
  KRProcess* process = object({.pid = 10});
  table.end([process serialNumber]);
  const unsigned before = [KRProcess applicationLaunchEndCount];
  [KRProcess applicationStarted];
  EXPECT_EQ([KRProcess applicationLaunchEndCount], before + 1);
  EXPECT_EQ([entries() count], 1U);
  [KRProcess applicationEnded];
  EXPECT_EQ([KRProcess applicationLaunchEndCount], before + 2);
  EXPECT_EQ([entries() count], 0U);
}

TEST_F(Cache, ThreadsThatLookUpOneProcessGetOneObject) {
  const SerialNumber serial = table.add({.pid = 10, .name = "A"});
  constexpr int kThreads = 8;
  std::atomic<int> waiting = kThreads;
  std::vector<KRProcess*> found(kThreads);
  std::vector<std::thread> threads;
  for (int index = 0; index < kThreads; ++index) {
    threads.emplace_back([&, index] {
      GSRegisterCurrentThread();
      @autoreleasepool {
        --waiting;
        while (waiting > 0) std::this_thread::yield();
        for (int round = 0; round < 200; ++round) {
          found[index] = [KRProcess processWithSerialNumber:serial];
          [found[index] name];
          [KRProcess cleanupCache];
        }
      }
      GSUnregisterCurrentThread();
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (KRProcess* process : found) EXPECT_EQ(process, found.front());
  EXPECT_EQ([entries() count], 1U);
}

}  // namespace
}  // namespace kr
