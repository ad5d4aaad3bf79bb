// The product's confirmation, sent over a real bus to the real window.
#include <objc/runtime.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <future>

#import "platform/cocoa/AppleEventHandlers.h"
#import "platform/cocoa/Bridging.h"
#include "platform/linux/ProcFS.h"
#include "samples/done/SendDone.h"
#include "tests/support/BusPeer.h"
#include "tests/support/Child.h"
#import "tests/window/WindowTest.h"

// Is called by a timer, and keeps the longest time that the main thread has worked between two calls. It is
// processor time, so that other programs do not count.
@interface KRTestPulse : NSObject {
 @public
  double last;
  double longest;
}
@end

@implementation KRTestPulse

- (void)beat:(NSTimer*)timer {
  timespec used{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
  const double now = static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) / 1e9;
  if (last > 0) longest = std::max(longest, now - last);
  last = now;
}

@end

// Takes events, and raises on one without a text.
@interface KRTestTarget : NSObject {
 @public
  int received;
  BOOL onMainThread;
}
@end

@implementation KRTestTarget

- (void)take:(NSAppleEventDescriptor*)event reply:(NSAppleEventDescriptor*)reply {
  onMainThread = [NSThread isMainThread];
  ++received;
  if (kr::platform::directText(event) == nil) [NSException raise:NSGenericException format:@"no text"];
}

@end

namespace kr::testing {
namespace {

constexpr std::uint32_t kClass = 0x53696E53;  // 'SinS'
constexpr std::uint32_t kID = 0x446F6E65;     // 'Done'

int gSounds;

void countSound(id, SEL) {
  ++gSounds;
}

// Has the done sound counted, not played.
void countSounds() {
  gSounds = 0;
  class_replaceMethod([InstallerWinController class], @selector(playDoneSound),
                      reinterpret_cast<IMP>(countSound), "v@:");
}

class HandshakeInTheWindow : public WindowTest {
 protected:
  explicit HandshakeInTheWindow(bool withBus = true) : WindowTest(withBus) {}

  static platform::SerialNumber own() { return platform::procfs::serialNumber(::getpid()).value(); }

  // Runs the window while another thread does something that waits for it; what that answers.
  template <class Work>
  auto meanwhile(Work work) {
    auto result = std::async(std::launch::async, work);
    EXPECT_TRUE(
        runUntil([&] { return result.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }, 30));
    return result.get();
  }

  void loadNotes(const Lines& more = {"-version", "2.1"}) {
    Lines arguments{"-sourcePath", product()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    load(arguments);
    refuseToEnd();
    EXPECT_TRUE(meanwhile([] { return eventuallyReceives(); })) << "the window takes no events";
  }

  static bool eventuallyReceives() {
    for (int attempt = 0; attempt < 500; ++attempt) {
      if (receivesEvents(own())) return true;
      ::usleep(10'000);
    }
    return false;
  }

  // Sends a body as another program and waits for its reply; the error in it, empty for none.
  std::string send(GVariant* body) {
    return meanwhile([&] { return BusPeer().send(own(), body); });
  }
  std::string sendText(const std::string& text) { return send(BusPeer::event(kClass, kID, {text})); }

  void install() {
    press(controller_->installButton);
    EXPECT_TRUE(runUntil([&] { return [controller_->installButton isEnabled]; }));
    EXPECT_TRUE(controller_->finished);
  }

  // As the page was before the installation, to see whether it is shown again.
  void turnPageBack() {
    [controller_->checkmarkField setHidden:YES];
    [controller_->introField setStringValue:@""];
  }
  bool showsSuccess() {
    return ![controller_->checkmarkField isHidden] &&
           text(controller_->introField) == "Notes was successfully installed.";
  }

  // The lines about events, in their order.
  Lines eventLines() {
    Lines found;
    for (const std::string& line : log_.lines()) {
      if (line.starts_with("received Done") || line == "installation finished") found.push_back(line);
    }
    return found;
  }
};

TEST_F(HandshakeInTheWindow, TheHandlerIsInstalledBeforeAnythingElse) {
  loadNotes();
  ASSERT_GE(log_.lines().size(), 2U);
  EXPECT_EQ(log_.lines()[0], "AppleEvents installed");
  EXPECT_EQ(log_.lines()[1], "direct invocation");
}

TEST_F(HandshakeInTheWindow, AnEventBeforeTheInstallationIsLoggedAndIgnored) {
  loadNotes();
  EXPECT_EQ(sendText("Notes 2.1"), "");
  EXPECT_EQ(sendText("Notes (null)"), "");
  EXPECT_EQ(eventLines(), (Lines{"received Done event (Notes 2.1), current installation: (null)",
                                 "received Done event (Notes (null)), current installation: (null)"}));
  EXPECT_FALSE(controller_->finished);
  EXPECT_TRUE([controller_->installButton isEnabled]);
}

TEST_F(HandshakeInTheWindow, TheConfirmationShowsSuccessAgain) {
  loadNotes();
  install();
  turnPageBack();
  EXPECT_TRUE(meanwhile([] { return sendDoneTo(::getpid(), installationTag("Notes", "2.1")); }));
  EXPECT_TRUE(runUntil([&] { return showsSuccess(); }));
  EXPECT_EQ(eventLines(), (Lines{"received Done event (Notes 2.1), current installation: Notes 2.1",
                                 "installation finished"}));
  EXPECT_EQ(title(controller_->installButton), "OK");
}

TEST_F(HandshakeInTheWindow, EveryConfirmationIsTakenAgain) {
  loadNotes();
  install();
  for (int time = 0; time < 3; ++time) {
    turnPageBack();
    EXPECT_EQ(sendText("Notes 2.1"), "");
    EXPECT_TRUE(runUntil([&] { return showsSuccess(); }));
  }
  EXPECT_EQ(eventLines().size(), 6U);
}

TEST_F(HandshakeInTheWindow, TheConfirmationPlaysTheDoneSoundAgain) {
  loadNotes();
  countSounds();
  install();
  EXPECT_EQ(gSounds, 1);
  EXPECT_EQ(sendText("other"), "");
  EXPECT_EQ(sendText("Notes 2.1"), "");
  EXPECT_TRUE(runUntil([] { return gSounds == 2; }));
}

TEST_F(HandshakeInTheWindow, TheConfirmationStartsTheQuitDelayAgain) {
  loadNotes({"-version", "2.1", "-completionQuit", "300"});
  install();
  EXPECT_EQ(sendText("Notes 2.1"), "");
  EXPECT_TRUE(runUntil([&] {
    const Lines lines = log_.lines();
    return std::count(lines.begin(), lines.end(), "quit delay: 300.0") == 2;
  }));
}

TEST_F(HandshakeInTheWindow, TheConfirmationMayComeWhileTheInstallationStillRuns) {
  // The product is opened, but the thread goes on trying; it confirms at the third attempt.
  loadNotes();
  applications_.opensAfterAttempts = 0;
  applications_.onOpen = [&](int attempt) {
    if (attempt == 3) (void)sendDoneTo(::getpid(), "Notes 2.1");
  };
  press(controller_->installButton);
  EXPECT_TRUE(runUntil([&] { return showsSuccess(); }));
  EXPECT_TRUE(runUntil([&] { return logHas("launched: 0"); }));
  EXPECT_TRUE(showsSuccess()) << "the thread's own report is a success, too";
  EXPECT_EQ(eventLines(), (Lines{"received Done event (Notes 2.1), current installation: Notes 2.1",
                                 "installation finished"}));
}

TEST_F(HandshakeInTheWindow, AConfirmationAfterAFailureIsASuccess) {
  loadNotes();
  install();
  [controller_ installationFinished:@"failed"];
  turnPageBack();
  EXPECT_EQ(sendText("Notes 2.1"), "");
  EXPECT_TRUE(runUntil([&] { return showsSuccess(); }));
}

TEST_F(HandshakeInTheWindow, WithoutAVersionTheProductsConfirmationNeverMatches) {
  loadNotes({});
  install();
  turnPageBack();
  EXPECT_EQ(sendText("Notes 2.1"), "");
  EXPECT_EQ(eventLines(), Lines{"received Done event (Notes 2.1), current installation: Notes (null)"});
  EXPECT_FALSE(runUntil([&] { return showsSuccess(); }, 0.2));
}

TEST_F(HandshakeInTheWindow, ForeignTextsAreLoggedAndIgnored) {
  loadNotes();
  install();
  turnPageBack();
  for (const char* text : {"notes 2.1", "Notes 2.1 ", " Notes 2.1", "Notes  2.1", "Notes 2.10", "Notes", "",
                           "Other 2.1", "N\xC3\xB6tes 2.1"}) {
    EXPECT_EQ(sendText(text), "") << "the handler never answers with an error";
    EXPECT_EQ(log_.lines().back(),
              "received Done event (" + std::string(text) + "), current installation: Notes 2.1");
  }
  EXPECT_FALSE(runUntil([&] { return showsSuccess(); }, 0.2));
}

TEST_F(HandshakeInTheWindow, ADirectObjectThatIsNoTextIsNone) {
  loadNotes();
  install();
  turnPageBack();
  for (const char* body :
       {"(uint32 1399418451, uint32 1148153445)", "(uint32 1399418451, uint32 1148153445, @as [])",
        "(uint32 1399418451, uint32 1148153445, ['Notes 2.1', 'Notes 2.1'])",
        "(uint32 1399418451, uint32 1148153445, int32 21)",
        "(uint32 1399418451, uint32 1148153445, b'Notes 2.1')",
        "(uint32 1399418451, uint32 1148153445, <'Notes 2.1'>)"}) {
    EXPECT_EQ(send(::g_variant_new_parsed(body)), "") << body;
    EXPECT_EQ(log_.lines().back(), "received Done event ((null)), current installation: Notes 2.1") << body;
  }
  EXPECT_FALSE(runUntil([&] { return showsSuccess(); }, 0.2));
}

TEST_F(HandshakeInTheWindow, OtherEventsAreNotHandled) {
  loadNotes();
  install();
  const std::size_t lines = log_.lines().size();
  EXPECT_NE(send(BusPeer::event(kClass, kID + 1, {"Notes 2.1"})), "");
  EXPECT_NE(send(BusPeer::event(kClass + 1, kID, {"Notes 2.1"})), "");
  EXPECT_NE(send(::g_variant_new_parsed("('Notes 2.1',)")), "");
  EXPECT_EQ(log_.lines().size(), lines);
}

TEST_F(HandshakeInTheWindow, ATextOfAMegabyteOrThatIsNoUTF8DoesNoHarm) {
  loadNotes();
  install();
  turnPageBack();
  const std::string text(1 << 20, 'x');
  EXPECT_EQ(sendText(text), "");
  EXPECT_EQ(log_.lines().back(), "received Done event (" + text + "), current installation: Notes 2.1");
  const std::size_t lines = log_.lines().size();
  EXPECT_TRUE(
      meanwhile([] { return BusPeer::sendInvalidText(own(), BusPeer::event(kClass, kID, {"Notes X2.1"})); }));
  EXPECT_EQ(log_.lines().size(), lines) << "the bus does not let it through";
  EXPECT_EQ(sendText("Notes 2.1"), "");
  EXPECT_TRUE(runUntil([&] { return showsSuccess(); }));
}

TEST_F(HandshakeInTheWindow, AnEventThatHoldsNothingIsLogged) {
  loadNotes();
  [controller_ installationDone:nil withReplyEvent:nil];
  [controller_ installationDone:[[[NSAppleEventDescriptor alloc] init] autorelease] withReplyEvent:nil];
  EXPECT_EQ(eventLines(), Lines(2, "received Done event ((null)), current installation: (null)"));
}

TEST_F(HandshakeInTheWindow, AnEventIsTakenWhileAModalPanelIsUp) {
  loadNotes();
  NSWindow* panel = [[[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, 100, 100)
                                                 styleMask:NSTitledWindowMask
                                                   backing:NSBackingStoreBuffered
                                                     defer:NO] autorelease];
  [panel setReleasedWhenClosed:NO];
  NSModalSession session = [NSApp beginModalSessionForWindow:panel];
  auto sent = std::async(std::launch::async,
                         [] { return BusPeer().send(own(), BusPeer::event(kClass, kID, {"x"})); });
  const NSTimeInterval start = [NSDate timeIntervalSinceReferenceDate];
  while (eventLines().empty() && [NSDate timeIntervalSinceReferenceDate] < start + 10) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    [[NSRunLoop currentRunLoop] runMode:NSModalPanelRunLoopMode
                             beforeDate:[NSDate dateWithTimeIntervalSinceNow:0.02]];
    [pool release];
  }
  EXPECT_EQ(eventLines().size(), 1U);
  [NSApp endModalSession:session];
  [panel orderOut:nil];
  EXPECT_EQ(sent.get(), "");
}

TEST_F(HandshakeInTheWindow, EveryEventHasATargetOfItsOwnWhichALaterOneReplaces) {
  loadNotes();
  KRTestTarget* one = [[[KRTestTarget alloc] init] autorelease];
  KRTestTarget* two = [[[KRTestTarget alloc] init] autorelease];
  platform::setAppleEventHandler(one, @selector(take:reply:), 1, 2);
  EXPECT_EQ(send(BusPeer::event(1, 2, {"x"})), "");
  EXPECT_EQ(one->received, 1);
  EXPECT_TRUE(one->onMainThread);
  platform::setAppleEventHandler(two, @selector(take:reply:), 1, 2);
  EXPECT_EQ(send(BusPeer::event(1, 2, {"x"})), "");
  EXPECT_EQ(one->received, 1);
  EXPECT_EQ(two->received, 1);
  EXPECT_EQ(eventLines(), Lines{}) << "none of them was for the window";
}

TEST_F(HandshakeInTheWindow, AnExceptionOfATargetIsLoggedAndTheNextEventArrives) {
  loadNotes();
  KRTestTarget* target = [[[KRTestTarget alloc] init] autorelease];
  platform::setAppleEventHandler(target, @selector(take:reply:), 1, 2);
  EXPECT_EQ(send(BusPeer::event(1, 2, {})), "");
  EXPECT_TRUE(log_.lines().back().starts_with("EXCEPTION @ Apple event: ")) << log_.lines().back();
  EXPECT_EQ(sendText("next"), "");
  EXPECT_EQ(eventLines().size(), 1U);
  EXPECT_EQ(target->received, 1);
}

TEST_F(HandshakeInTheWindow, AFloodOfEventsDoesNotHoldTheWindowUp) {
  constexpr int kCount = 10'000;
  loadNotes();
  install();
  KRTestPulse* pulse = [[[KRTestPulse alloc] init] autorelease];
  NSTimer* timer = [NSTimer scheduledTimerWithTimeInterval:0.005
                                                    target:pulse
                                                  selector:@selector(beat:)
                                                  userInfo:nil
                                                   repeats:YES];
  for (const char* text : {"Foreign 1.0", "Notes 2.1"}) {
    pulse->last = pulse->longest = 0;
    const auto already = static_cast<std::ptrdiff_t>(eventLines().size());
    Child flood({KR_EVENT_FLOOD, std::to_string(::getpid()), std::to_string(kClass), std::to_string(kID),
                 text, std::to_string(kCount)});
    turnPageBack();
    // To count the lines is work as well.
    int turn = 0;
    const auto allHaveCome = [&] {
      return ++turn % 50 == 0 && static_cast<std::ptrdiff_t>(eventLines().size()) - already >= kCount;
    };
    EXPECT_TRUE(runUntil(allHaveCome, 60)) << text;
    EXPECT_LT(pulse->longest, 0.1) << text;
  }
  EXPECT_TRUE(runUntil([&] { return showsSuccess(); }));
  [timer invalidate];
}

class HandshakeWithoutABus : public HandshakeInTheWindow {
 protected:
  HandshakeWithoutABus() : HandshakeInTheWindow(false) {}
};

TEST_F(HandshakeWithoutABus, EverythingElseWorks) {
  load({"-sourcePath", product(), "-version", "2.1"});
  EXPECT_EQ(log_.lines()[0], "AppleEvents installed");
  install();
  EXPECT_TRUE(showsSuccess());
}

}  // namespace
}  // namespace kr::testing
