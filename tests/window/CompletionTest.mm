// How the window tells the end of an installation, and the delay after which it goes.
#import "platform/cocoa/Bridging.h"
#import "tests/window/WindowTest.h"

// What the install thread and the handler of the confirmation do, from another thread.
@interface InstallerWinController (Reports)
- (void)reportFailureThenSuccess;
@end

@implementation InstallerWinController (Reports)

- (void)reportFailureThenSuccess {
  @autoreleasepool {
    for (NSString* report : {@"failed", (NSString*)nil}) {
      [self performSelectorOnMainThread:@selector(installationFinished:) withObject:report waitUntilDone:NO];
    }
  }
}

@end

namespace kr::testing {
namespace {

bool isAnimated(NSProgressIndicator* bar) {
  return [[bar valueForKey:@"isRunning"] boolValue];
}

class Completion : public WindowTest {
 protected:
  Lines withEverything(const Lines& more = {}) {
    Lines arguments{
        "-sourcePath", product(), "-version", "2.1", "-documentationPath", scratch_.file("Manual.txt")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }

  // As while the install thread runs.
  void loadAndDisableButtons(const Lines& arguments) {
    load(arguments);
    [controller_->installButton setEnabled:NO];
    [controller_->cancelButton setEnabled:NO];
  }

  void expectFinalPage() {
    EXPECT_EQ(text(controller_->introField), "Notes was successfully installed.");
    EXPECT_EQ(text(controller_->nameField), "Notes 2.1") << "it stays";
    EXPECT_FALSE([controller_->nameField isHidden]);
    EXPECT_FALSE([controller_->introField isHidden]);
    EXPECT_FALSE([controller_->checkmarkField isHidden]);
    EXPECT_NE([controller_->checkmarkField image], nil);
    EXPECT_EQ(title(controller_->installButton), "OK");
    EXPECT_TRUE([controller_->installButton isEnabled]);
    EXPECT_TRUE([controller_->cancelButton isHidden]);
    EXPECT_FALSE([controller_->cancelButton isEnabled]);
    for (NSView* hidden : {(NSView*)controller_->pathField, (NSView*)controller_->explanationField,
                           (NSView*)controller_->messageField, (NSView*)controller_->helpButton}) {
      EXPECT_TRUE([hidden isHidden]);
    }
    EXPECT_TRUE(controller_->finished);
    EXPECT_EQ(page(), 1);
  }

  void expectReadyForAnotherTry() {
    EXPECT_TRUE([controller_->installButton isEnabled]);
    EXPECT_EQ(title(controller_->installButton), "Install");
    EXPECT_TRUE([controller_->cancelButton isEnabled]);
    EXPECT_FALSE([controller_->cancelButton isHidden]);
    EXPECT_TRUE([controller_->checkmarkField isHidden]);
    EXPECT_FALSE([controller_->pathField isHidden]);
    EXPECT_FALSE([controller_->explanationField isHidden]);
    EXPECT_FALSE([controller_->helpButton isHidden]);
    EXPECT_FALSE(controller_->finished);
  }

  // Seconds until the application is asked to end; at most so many.
  double secondsUntilTheEnd(double most) {
    const NSTimeInterval start = [NSDate timeIntervalSinceReferenceDate];
    runUntil([&] { return requestsToEnd() > 0; }, most);
    return [NSDate timeIntervalSinceReferenceDate] - start;
  }

  bool logsADelay() {
    for (const std::string& line : log_.lines()) {
      if (line.starts_with("quit delay")) return true;
    }
    return false;
  }
};

TEST_F(Completion, SuccessTurnsThePageIntoTheFinalMessageWithACheckMark) {
  loadAndDisableButtons(withEverything());
  [controller_ installationFinished:nil];
  expectFinalPage();
}

TEST_F(Completion, ASecondReportOfSuccessShowsThePageAgain) {
  loadAndDisableButtons(withEverything());
  [controller_ installationFinished:nil];
  [controller_->introField setStringValue:@""];
  [controller_->checkmarkField setHidden:YES];
  [controller_ installationFinished:nil];
  expectFinalPage();
}

TEST_F(Completion, OKQuitsOnceThereIsAFinalMessage) {
  load(withEverything());
  refuseToEnd();
  [controller_ installationFinished:nil];
  press(controller_->installButton);
  EXPECT_EQ(requestsToEnd(), 1);
  EXPECT_FALSE(logHas("Install")) << "nothing is installed again";
}

TEST_F(Completion, SuccessHidesTheWayBackToTheReadMe) {
  loadAndDisableButtons(withEverything({"-readMePath", scratch_.file("readme.txt")}));
  [controller_ selectTab:1];
  [controller_ installationFinished:nil];
  expectFinalPage();
}

TEST_F(Completion, AFailureIsPutIntoTheMessageAsItIs) {
  loadAndDisableButtons(withEverything());
  [controller_ installationFinished:@"It failed: 100% of %@.\rTry again."];
  EXPECT_EQ(text(controller_->messageField), "It failed: 100% of %@.\rTry again.");
  EXPECT_TRUE([controller_->messageField isHidden]) << "it stays as it was";
  expectReadyForAnotherTry();
}

TEST_F(Completion, AMessageThatIsShownStaysShown) {
  loadAndDisableButtons(withEverything());
  [controller_->messageField setHidden:NO];
  [controller_ installationFinished:@"failed"];
  EXPECT_FALSE([controller_->messageField isHidden]);
}

TEST_F(Completion, ACancelledAuthorisationLeavesBothButtonsReadyAndNoMessage) {
  loadAndDisableButtons(withEverything());
  [controller_ installationFinished:@"failed"];
  [controller_->installButton setEnabled:NO];
  [controller_->cancelButton setEnabled:NO];
  [controller_ installationFinished:@""];
  EXPECT_EQ(text(controller_->messageField), "");
  expectReadyForAnotherTry();
}

TEST_F(Completion, AfterAFailureTheCancelButtonStillLeadsBackToTheReadMe) {
  loadAndDisableButtons(withEverything({"-readMePath", scratch_.file("readme.txt")}));
  [controller_ selectTab:1];
  [controller_ installationFinished:@"failed"];
  EXPECT_EQ(title(controller_->cancelButton), "Go Back");
  press(controller_->cancelButton);
  EXPECT_EQ(page(), 0);
}

TEST_F(Completion, ASuccessAfterAFailureIsASuccess) {
  loadAndDisableButtons(withEverything());
  [controller_ installationFinished:@"failed"];
  [controller_ installationFinished:nil];
  expectFinalPage();
}

TEST_F(Completion, ReportsAreTakenInTheOrderInWhichTheyWereHandedOver) {
  load(withEverything());
  [NSThread detachNewThreadSelector:@selector(reportFailureThenSuccess) toTarget:controller_ withObject:nil];
  EXPECT_TRUE(runUntil([&] { return controller_->finished; }));
  EXPECT_EQ(text(controller_->messageField), "failed");
  expectFinalPage();
}

TEST_F(Completion, AFinalMessageIsAFormatForTheName) {
  load(withEverything({"-productName", "100% %@ Notes"}));
  [controller_ showFinalMessage:@"%@ was successfully installed."];
  EXPECT_EQ(text(controller_->introField), "100% %@ Notes was successfully installed.");
  [controller_ showFinalMessage:@"a text alone"];
  EXPECT_EQ(text(controller_->introField), "a text alone");
}

TEST_F(Completion, ASetupErrorUsesTheSamePageWithoutACheckMark) {
  load({"-sourcePath", scratch_.folder("Plain.app")});
  refuseToEnd();
  EXPECT_EQ(text(controller_->introField), "missing product signature");
  EXPECT_TRUE(controller_->finished);
  EXPECT_FALSE(logsADelay()) << "only an installation starts the delay";
  press(controller_->installButton);
  EXPECT_EQ(requestsToEnd(), 1);
}

TEST_F(Completion, ProgressEndsWithTheReport) {
  for (NSString* report : {(NSString*)nil, @"failed"}) {
    if (controller_ == nil) load(withEverything());
    [controller_ animateProgress:@"YES"];
    ASSERT_TRUE(isAnimated(controller_->progressIndicator));
    [controller_ installationFinished:report];
    EXPECT_FALSE(isAnimated(controller_->progressIndicator));
  }
}

TEST_F(Completion, WithoutADelayNothingIsLoggedAndTheWindowStays) {
  load(withEverything());
  refuseToEnd();
  [controller_ installationFinished:nil];
  [controller_ installationFinished:@"failed"];
  EXPECT_FALSE(logsADelay());
  EXPECT_FALSE(runUntil([&] { return requestsToEnd() > 0; }, 0.3));
}

TEST_F(Completion, TheDelayIsLoggedAndThenTheApplicationEnds) {
  load(withEverything({"-completionQuit", "2.5"}));
  refuseToEnd();
  [controller_ installationFinished:nil];
  EXPECT_TRUE(logHas("quit delay: 2.5"));
  const double seconds = secondsUntilTheEnd(10);
  EXPECT_GE(seconds, 2.4);
  EXPECT_LT(seconds, 5);
}

TEST_F(Completion, TheDelayCountsAfterAFailureAndACancelledAuthorisationToo) {
  load(withEverything({"-completionQuit", "0.5"}));
  for (NSString* report : {@"failed", @""}) {
    refuseToEnd();
    const std::size_t lines = log_.lines().size();
    [controller_ installationFinished:report];
    EXPECT_EQ(log_.lines().size(), lines + 1);
    EXPECT_EQ(log_.lines().back(), "quit delay: 0.5");
    const double seconds = secondsUntilTheEnd(10);
    EXPECT_GE(seconds, 0.45);
    EXPECT_LT(seconds, 5);
  }
}

TEST_F(Completion, ASecondReportDoesNotPutTheEndOff) {
  load(withEverything({"-completionQuit", "1"}));
  refuseToEnd();
  [controller_ installationFinished:nil];
  runUntil([] { return false; }, 0.6);
  [controller_ installationFinished:nil];
  EXPECT_LT(secondsUntilTheEnd(10), 0.9);
}

struct Delay {
  const char* argument;
  const char* logged;
  bool ends;
};

class CompletionDelay : public Completion, public ::testing::WithParamInterface<Delay> {};

TEST_P(CompletionDelay, IsReadAsTheNumberAtTheFrontOfTheText) {
  load(withEverything({"-completionQuit", GetParam().argument}));
  refuseToEnd();
  [controller_ installationFinished:nil];
  EXPECT_TRUE(logHas(GetParam().logged)) << log_.lines().back();
  EXPECT_EQ(runUntil([&] { return requestsToEnd() > 0; }, GetParam().ends ? 5 : 0.4), GetParam().ends);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, CompletionDelay,
    ::testing::Values(Delay{"0", "quit delay: 0.0", false}, Delay{"", "quit delay: 0.0", false},
                      Delay{"abc", "quit delay: 0.0", false}, Delay{"nan", "quit delay: 0.0", false},
                      Delay{"inf", "quit delay: 0.0", false}, Delay{" -1", "quit delay: -1.0", false},
                      Delay{"0.04", "quit delay: 0.0", true}, Delay{" 0.1", "quit delay: 0.1", true},
                      Delay{"1e-1", "quit delay: 0.1", true}, Delay{"0.1 seconds", "quit delay: 0.1", true},
                      Delay{"0,9", "quit delay: 0.0", false}, Delay{"2,5", "quit delay: 2.0", true},
                      Delay{"1e9", "quit delay: 1000000000.0", false},
                      Delay{"1e39", "quit delay: inf", false}),
    [](const auto& delay) { return std::to_string(delay.index); });

}  // namespace
}  // namespace kr::testing
