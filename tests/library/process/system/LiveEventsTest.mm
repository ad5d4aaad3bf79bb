// The events of a real desktop inside the program that is told of them.
#import <Foundation/Foundation.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <optional>
#include <thread>

#import "library/process/KRProcess.h"
#import "platform/cocoa/Bridging.h"
#include "platform/linux/ProcFS.h"
#include "tests/support/Desktop.h"
#import "tests/support/NotificationRecorder.h"
#import "tests/support/RunLoop.h"
#include "tests/support/TestApplication.h"

namespace kr {
namespace {

using testing::Desktop;
using testing::eventuallyInRunLoop;
using testing::NotificationRecorder;
using testing::runLoop;
using testing::ScratchFolder;
using testing::TestApplication;
using Lines = std::vector<std::string>;

class LiveEvents : public ::testing::Test {
 protected:
  ~LiveEvents() override { [pool_ release]; }

  void install() {
    [KRProcess installNotifications];
    counter_ = [KRProcess applicationLaunchEndCount];
  }

  // Launches and ends since install().
  [[nodiscard]] unsigned counted() const { return [KRProcess applicationLaunchEndCount] - counter_; }

  [[nodiscard]] bool isTold(const std::string& change) {
    return eventuallyInRunLoop([&] {
      const Lines told = changes.values(@"change");
      for (; next_ < told.size(); ++next_) {
        if (told[next_] == change) {
          ++next_;
          return true;
        }
      }
      return false;
    });
  }

  static void end(TestApplication& application) {
    application.child().signal(SIGKILL);
    ASSERT_TRUE(application.child().wait(5.0));
  }

  NotificationRecorder changes{KRProcessChangeNotification};
  ScratchFolder folder;

 private:
  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
  unsigned counter_ = 0;
  std::size_t next_ = 0;
};

TEST_F(LiveEvents, AnApplicationWithoutWindowsIsKnownFromALookup) {
  const Desktop none({.display = false});
  install();
  TestApplication agent(folder, "Agent.app");
  runLoop(0.1);
  EXPECT_EQ(counted(), 0U);
  KRProcess* process = [KRProcess processWithPID:agent.pid()];
  ASSERT_TRUE(process != nil);
  EXPECT_EQ(counted(), 0U) << "out of the run loop only";
  EXPECT_TRUE(isTold("started"));
  EXPECT_EQ(counted(), 1U);
  [KRProcess allProcesses];
  runLoop(0.1);
  EXPECT_EQ(counted(), 1U);
  const platform::SerialNumber serial = [process serialNumber];
  end(agent);
  EXPECT_TRUE(isTold("ended"));
  EXPECT_EQ(counted(), 2U);
  EXPECT_TRUE([KRProcess cachedProcessWithSerialNumber:serial] == nil);
}

TEST_F(LiveEvents, ALaunchAndAQuitBeforeTheLoopIdlesAreOneNotification) {
  const Desktop desktop({.windowManager = true});
  TestApplication old(folder, "Old.app");
  install();
  runLoop(0.2);
  const NSUInteger before = changes.count();
  TestApplication one(folder, "One.app", {}, {"window", "A"});
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  end(old);
  ASSERT_TRUE(eventuallyInRunLoop([&] { return counted() == 2U; }));
  runLoop(0.2);
  EXPECT_EQ(counted(), 2U);
  EXPECT_EQ(changes.count(), before + 1);
}

TEST_F(LiveEvents, EveryOneOfManyIsCounted) {
  const Desktop desktop({.windowManager = true});
  install();
  {
    std::vector<TestApplication> many;
    for (int index = 0; index < 12; ++index) {
      const std::string name(1, static_cast<char>('A' + index));
      many.emplace_back(folder, name + ".app", testing::BundleInformation{},
                        std::vector<std::string>{"window", name});
    }
    EXPECT_TRUE(eventuallyInRunLoop([&] { return counted() == 12U; })) << counted();
  }
  EXPECT_TRUE(eventuallyInRunLoop([&] { return counted() == 24U; })) << counted();
}

TEST_F(LiveEvents, AnotherServerIsWatchedOnceItIsUsed) {
  std::optional<Desktop> first(std::in_place, testing::DesktopParts{.windowManager = true});
  install();
  TestApplication one(folder, "One.app", {}, {"window", "A"});
  EXPECT_TRUE(isTold("started"));
  first->stopDisplay();
  runLoop(0.2);
  EXPECT_TRUE([KRProcess frontProcess] == nil);
  first.reset();
  const Desktop second({.windowManager = true});
  // One that did not answer is not asked again for a second.
  runLoop(1.1);
  EXPECT_TRUE([KRProcess frontProcess] == nil);
  runLoop(0.1);
  const unsigned before = counted();
  TestApplication two(folder, "Two.app", {}, {"window", "B"});
  EXPECT_TRUE(isTold("started"));
  EXPECT_EQ(counted(), before + 1);
}

TEST_F(LiveEvents, AConnectionThatTheServerEndsIsMadeAnew) {
  const Desktop desktop({.windowManager = true});
  install();
  runLoop(1.1);
  // Every client of the server but the window manager's.
  testing::Child tool({KR_X_DISCONNECT, "but", "openbox"});
  const std::optional<int> status = tool.wait(10.0);
  ASSERT_TRUE(status && *status == 0);
  runLoop(0.2);
  TestApplication one(folder, "One.app", {}, {"window", "A"});
  EXPECT_TRUE(isTold("started"));
}

TEST_F(LiveEvents, StayRightWhileApplicationsComeAndGoInTheMiddleOfEveryRead) {
  const Desktop none({.display = false});
  const std::string executable = testing::makeBundle(
      folder, "Brief.app", {.signature = "BRIF", .name = "Brief", .identifier = "com.x.brief"});
  install();
  std::atomic<int> left = 60;
  std::thread coming([&] {
    for (; left > 0; --left) {
      testing::Child brief({executable});
      std::this_thread::sleep_for(std::chrono::microseconds(left * 137 % 4000));
      brief.signal(SIGKILL);
      static_cast<void>(brief.wait(5.0));
    }
  });
  int found = 0;
  while (left > 0) {
    @autoreleasepool {
      for (KRProcess* process in [KRProcess allProcesses]) {
        const std::string name = toBytes([process name]);
        const std::string path = toBytes([process path]);
        const std::string signature = toBytes([process signatureString]);
        [process infoDictionary];
        [process version];
        [process launchDate];
        [process isCocoa];
        [process isBackgroundOnly];
        [process cpuTime];
        if (path != folder / "Brief.app" || name.empty()) continue;
        ++found;
        EXPECT_EQ(name, "Brief");
        if (!signature.empty()) EXPECT_EQ(signature, "BRIF");
        const std::string identifier = toBytes([process identifier]);
        if (!identifier.empty()) EXPECT_EQ(identifier, "com.x.brief");
      }
      runLoop(0.001);
    }
  }
  coming.join();
  EXPECT_GT(found, 0);
  // Every one that was come across has ended, and nothing of them is left.
  EXPECT_TRUE(eventuallyInRunLoop([&] {
    for (KRProcess* process in [[KRProcess cachedProcessesEnumerator] allObjects]) {
      if (![process isStillRunning]) return false;
    }
    return counted() % 2 == 0;
  })) << counted();
  EXPECT_GT(counted(), 0U);
}

TEST_F(LiveEvents, ThreadsThatLookUpAreToldOnTheMainThread) {
  const Desktop none({.display = false});
  install();
  TestApplication agent(folder, "Agent.app");
  bool onMainThread = false;
  changes.onNotification = [&](NSNotification*) { onMainThread = [NSThread isMainThread]; };
  std::thread([&] {
    GSRegisterCurrentThread();
    @autoreleasepool {
      [KRProcess processWithPID:agent.pid()];
    }
    GSUnregisterCurrentThread();
  }).join();
  EXPECT_TRUE(isTold("started"));
  EXPECT_TRUE(onMainThread);
}

// A later process that was given the ID of one that has ended.
class ReusedProcessID : public LiveEvents {
 protected:
  void SetUp() override {
    // Only the owner of a process namespace may say which ID comes next.
    const char* isolated = std::getenv("KR_TEST_ISOLATED");
    if (isolated == nullptr) GTEST_SKIP() << "no process namespace of its own";
  }

  // The next process gets this ID.
  static void setNextProcessID(pid_t pid) {
    const std::string text = std::to_string(pid - 1);
    const int file = ::open("/proc/sys/kernel/ns_last_pid", O_WRONLY | O_CLOEXEC);
    ASSERT_GE(file, 0);
    ASSERT_EQ(::write(file, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    ::close(file);
  }

  Desktop none{{.display = false}};
};

TEST_F(ReusedProcessID, IsAnotherProcess) {
  std::optional<TestApplication> first(std::in_place, folder, "First.app",
                                       testing::BundleInformation{.signature = "FRST"});
  const pid_t pid = first->pid();
  KRProcess* old = [[[KRProcess processWithPID:pid] retain] autorelease];
  ASSERT_TRUE(old != nil);
  end(*first);
  // The kernel hands all other IDs out before one comes back, which takes longer than its clock's tick.
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  const std::string executable = testing::makeBundle(folder, "Second.app", {.signature = "SCND"});
  setNextProcessID(pid);
  TestApplication second(executable);
  ASSERT_EQ(second.pid(), pid);
  // The notification that would clean the cache up is still to come.
  KRProcess* now = [KRProcess processWithPID:pid];
  ASSERT_TRUE(now != nil);
  EXPECT_NE(now, old);
  EXPECT_FALSE([now isEqual:old]);
  EXPECT_FALSE([old isStillRunning]);
  EXPECT_EQ([old unixPID], 0);
  EXPECT_TRUE([old name] == nil);
  EXPECT_EQ(toBytes([now signatureString]), "SCND");
  EXPECT_EQ([KRProcess processWithSignatureString:@"SCND"], now);
  EXPECT_TRUE([KRProcess processWithSignatureString:@"FRST"] == nil);
  [old quit];
  [old forceQuit];
  [old setHidden:YES];
  EXPECT_TRUE([now isStillRunning]);
  // The end that is still to be told is that of the first.
  runLoop(0.1);
  EXPECT_EQ([KRProcess processWithPID:pid], now);
  EXPECT_TRUE([KRProcess cachedProcessWithSerialNumber:[old serialNumber]] == nil);
  [KRProcess installNotifications];
  const unsigned before = [KRProcess applicationLaunchEndCount];
  end(second);
  EXPECT_TRUE(eventuallyInRunLoop([&] { return [KRProcess applicationLaunchEndCount] == before + 1; }));
  EXPECT_TRUE([KRProcess cachedProcessWithSerialNumber:[now serialNumber]] == nil);
}

}  // namespace
}  // namespace kr
