// The process object over the system's own services and real processes.
#import <AppKit/AppKit.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "library/process/CpuTime.h"
#import "library/process/KRProcess.h"
#include "platform/Clock.h"
#include "platform/Services.h"
#include "platform/SystemServices.h"
#import "platform/cocoa/Bridging.h"
#include "platform/linux/ProcFS.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/Desktop.h"
#include "tests/support/EventReceiver.h"
#include "tests/support/Eventually.h"
#include "tests/support/TestApplication.h"

namespace kr {
namespace {

using testing::Desktop;
using testing::EventReceiver;
using testing::eventually;
using testing::ReceivedEvent;
using testing::ScratchFolder;
using testing::TestApplication;

class RealProcess : public ::testing::Test {
 protected:
  RealProcess() : scope_(set()) {}
  ~RealProcess() override { [pool_ release]; }

  static KRProcess* object(const TestApplication& application) {
    return [KRProcess processWithPID:application.pid()];
  }

  // The only log line, without its figures.
  std::string logged() const {
    const std::vector<std::string> lines = log.lines();
    EXPECT_EQ(lines.size(), 1U);
    return lines.empty() ? "" : lines.front();
  }

  platform::testing::RecordingLog log;
  ScratchFolder folder;

 private:
  platform::Services set() {
    platform::Services services = platform::services();
    services.log = &log;
    return services;
  }

  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
  Desktop withoutDisplay_{{.display = false}};
  platform::ScopedServices scope_;
};

TEST_F(RealProcess, ARunningProductIsFoundByItsSignature) {
  TestApplication one(folder, "Other.app", {.signature = "OTHR"});
  TestApplication two(folder, "Product.app",
                      {.signature = "kRt1",
                       .name = "The Product",
                       .identifier = "com.x.product",
                       .further = "<key>CFBundleShortVersionString</key><string>2.1</string>"
                                  "<key>NSPrincipalClass</key><string>NSApplication</string>"});
  KRProcess* process = [KRProcess processWithSignatureString:@"kRt1"];
  ASSERT_TRUE(process != nil);
  EXPECT_EQ([process unixPID], two.pid());
  EXPECT_EQ(toBytes([process name]), "The Product");
  EXPECT_EQ(toBytes([process path]), folder / "Product.app");
  EXPECT_EQ(toBytes([process identifier]), "com.x.product");
  EXPECT_EQ(toBytes([process version]), "2.1");
  EXPECT_EQ([process platform], KRPlatformCocoa);
  EXPECT_FALSE([process isBackgroundOnly]);
  EXPECT_EQ([[[process infoDictionary] objectForKey:@"pid"] intValue], two.pid());
  EXPECT_EQ([KRProcess processWithIdentifier:@"com.x.product"], process);
  EXPECT_TRUE([[KRProcess allProcesses] containsObject:process]);
  EXPECT_EQ(toBytes([process description]), "Process \"The Product\" (kRt1) 2.1");
}

TEST_F(RealProcess, TheRunningProgramIsAProcessToo) {
  KRProcess* own = [KRProcess currentProcess];
  EXPECT_EQ([own unixPID], ::getpid());
  EXPECT_TRUE([own isStillRunning]);
  EXPECT_TRUE([[KRProcess allProcesses] containsObject:own]);
}

TEST_F(RealProcess, APoliteQuitEndsIt) {
  TestApplication application(folder, "Product.app");
  EXPECT_TRUE([object(application) quitRunningApplicationWithTimeout:4.0F]);
  EXPECT_TRUE(logged().starts_with("quit Product: terminated after 0.")) << logged();
  const std::optional<int> status = application.child().wait(1.0);
  ASSERT_TRUE(status);
  EXPECT_TRUE(WIFSIGNALED(*status) && WTERMSIG(*status) == SIGTERM);
}

TEST_F(RealProcess, AProductThatTakesItsTimeIsWaitedFor) {
  TestApplication application(folder, "Product.app", {}, {"slow", "300"});
  EXPECT_TRUE([object(application) quitRunningApplicationWithTimeout:4.0F]);
  EXPECT_TRUE(logged().starts_with("quit Product: terminated after 0.")) << logged();
  const std::optional<int> status = application.child().wait(1.0);
  ASSERT_TRUE(status);
  EXPECT_TRUE(WIFEXITED(*status));
}

TEST_F(RealProcess, AStubbornProductIsEndedByForceAfterTheTime) {
  TestApplication application(folder, "Product.app", {}, {"stubborn"});
  const double start = platform::services().clock->monotonicSeconds();
  EXPECT_TRUE([object(application) quitRunningApplicationWithTimeout:0.3F]);
  EXPECT_NEAR(platform::services().clock->monotonicSeconds() - start, 0.3, 0.2);
  EXPECT_TRUE(logged().starts_with("force-quit Product: terminated after 0.0")) << logged();
}

TEST_F(RealProcess, AnObjectOfAProcessThatHasEndedSaysSo) {
  TestApplication application(folder, "Product.app");
  KRProcess* process = object(application);
  EXPECT_EQ(toBytes([process name]), "Product");
  application.child().signal(SIGKILL);
  ASSERT_TRUE(application.child().wait(5.0));
  EXPECT_FALSE([process isStillRunning]);
  EXPECT_EQ([process unixPID], 0);
  [process quit];
  EXPECT_EQ(log.lines(), (std::vector<std::string>{"cannot quit Product: no pid",
                                                   "quitting Product failed (-609; could not send event)"}));
  EXPECT_TRUE([KRProcess cachedProcessWithSerialNumber:[process serialNumber]] != nil);
  [KRProcess applicationEnded];
  EXPECT_TRUE([KRProcess cachedProcessWithSerialNumber:[process serialNumber]] == nil);
}

TEST_F(RealProcess, ForceQuitKills) {
  TestApplication application(folder, "Product.app", {}, {"stubborn"});
  [object(application) forceQuit];
  const std::optional<int> status = application.child().wait(5.0);
  ASSERT_TRUE(status);
  EXPECT_TRUE(WIFSIGNALED(*status) && WTERMSIG(*status) == SIGKILL);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(RealProcess, LaunchDateAndCpuTimeAreThoseOfTheKernel) {
  TestApplication application(folder, "Product.app", {}, {"busy", "200"});
  KRProcess* process = object(application);
  EXPECT_GT([process secondsRunning], 0.0);
  EXPECT_LT([process secondsRunning], 20.0);
  EXPECT_GE([process cpuTime], 0.1);
  EXPECT_LT([process cpuTime], 5.0);
}

TEST_F(RealProcess, EventsTravelOverTheBus) {
  const Desktop desktop({.display = false, .bus = true});
  KRProcess* own = [KRProcess currentProcess];
  EventReceiver receiver([own serialNumber]);
  [own sendAppleEventClass:'SinS' eventID:'Done' parameter:@"Product 1.0"];
  [own sendAppleEventClass:'SinS' eventID:'Ping'];
  [own sendAppleEventClass:'SinS' eventID:'Wait' timeout:5.0F];
  ASSERT_TRUE(eventually([&] { return receiver.received().size() == 3; }));
  EXPECT_EQ(receiver.received(), (std::vector<ReceivedEvent>{{'SinS', 'Done', {"Product 1.0"}, false},
                                                             {'SinS', 'Ping', {}, false},
                                                             {'SinS', 'Wait', {}, true}}));
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(RealProcess, AnEventToNobodyIsLogged) {
  const Desktop desktop({.display = false, .bus = true});
  TestApplication application(folder, "Product.app");
  [object(application) sendAppleEventClass:'SinS' eventID:'Done'];
  [object(application) sendAppleEventClass:'SinS' eventID:'Done' parameter:@"x"];
  EXPECT_EQ(logged(), "*** event error: -600");
}

TEST_F(RealProcess, TheFrontApplicationIsTheOneWithTheActiveWindow) {
  const Desktop desktop({.windowManager = true});
  TestApplication one(folder, "One.app", {}, {"window", "A"});
  EXPECT_TRUE(eventually([&] { return [object(one) isFrontProcess] != NO; }));
  TestApplication two(folder, "Two.app", {}, {"window", "B"});
  EXPECT_TRUE(eventually([&] { return [object(two) isFrontProcess] != NO; }));
  EXPECT_FALSE([object(one) isFrontProcess]);
  [object(one) setFrontProcess];
  EXPECT_TRUE(eventually([&] { return [object(one) isFrontProcess] != NO; }));
  [object(one) setHidden:YES];
  EXPECT_TRUE(eventually([&] { return [object(two) isFrontProcess] != NO; }));
  [object(one) temporarilySwitchOut];
  EXPECT_TRUE(eventually([&] { return [object(one) isFrontProcess] != NO; }));
}

TEST_F(RealProcess, ItsIconIsThatOfItsBundle) {
  TestApplication application(folder, "Product.app");
  NSImage* icon = [object(application) icon];
  ASSERT_TRUE(icon != nil);
  EXPECT_TRUE([icon isKindOfClass:[NSImage class]]);
  EXPECT_EQ([object(application) icon], icon);
}

}  // namespace
}  // namespace kr
