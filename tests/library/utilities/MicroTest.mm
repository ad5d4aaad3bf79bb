// How the keyboard is handed back by means of the helper, over services in memory.
#import "library/utilities/KRUtilities.h"
#import "platform/cocoa/Bridging.h"
#import "tests/library/utilities/UtilitiesFixture.h"

namespace kr::testing {
namespace {

using platform::SerialNumber;
using platform::testing::WindowRequest;
using Requests = std::vector<WindowRequest>;
using Kind = WindowRequest::Kind;

NSString* pathOfMicro(id, SEL, NSString* name, NSString* type) {
  if (![name isEqual:@"Micro"] || ![type isEqual:@"app"]) return nil;
  return @"/Product.app/Resources/Micro.app";
}

class Micro : public UtilitiesFixture {
 protected:
  // The helper is in front after so many polls.
  void comesToTheFrontAfter(int polls) {
    clock_.onSleep = [this, polls](double) {
      if (static_cast<int>(clock_.sleeps().size()) == polls) windowOrder_.inFront = helper;
    };
  }

  Lines linesOfMicro() {
    Lines lines;
    for (const std::string& line : log_.lines()) {
      if (line.find("Micro") != std::string::npos) lines.push_back(line);
    }
    return lines;
  }

  SerialNumber editor = processes_.add({.pid = 100, .name = "Editor"});
  SerialNumber helper = processes_.add({.pid = 101, .name = "Micro"});
  ReplacedMethod resource =
      ReplacedMethod::ofInstances([NSBundle class], @selector(pathForResource:ofType:), pathOfMicro);
};

TEST_F(Micro, IsOpenedAndTheApplicationBeforeItComesBack) {
  windowOrder_.inFront = editor;
  comesToTheFrontAfter(7);
  [KRUtilities launchMicro:NO];
  EXPECT_EQ(applications_.calls(), Lines{"openInBackground /Product.app/Resources/Micro.app"});
  EXPECT_EQ(windowOrder_.requests,
            (Requests{{Kind::wake, editor}, {Kind::wake, editor}, {Kind::frontWindowOnly, editor}}));
  EXPECT_EQ(linesOfMicro(), Lines{"wait count (Micro) = 7"});
  std::vector<double> sleeps(7, 0.001);
  sleeps.push_back(0.000001);
  EXPECT_EQ(clock_.sleeps(), sleeps) << "and none once it is back";
}

TEST_F(Micro, LeavesTheApplicationBehindWhereThatIsWanted) {
  windowOrder_.inFront = editor;
  comesToTheFrontAfter(1);
  [KRUtilities launchMicro:YES];
  EXPECT_EQ(windowOrder_.requests, (Requests{{Kind::wake, editor}, {Kind::wake, editor}}));
  EXPECT_EQ(clock_.sleeps().size(), 1U + 1U + 500U) << "it may come back by itself";
}

TEST_F(Micro, IsNoLongerWaitedForThanFiveHundredPolls) {
  windowOrder_.inFront = editor;
  [KRUtilities launchMicro:NO];
  EXPECT_EQ(linesOfMicro(), Lines{"wait count (Micro) = 500"});
  EXPECT_EQ(clock_.sleeps().size(), 500U + 1U) << "the application is in front all the time";
  EXPECT_EQ(windowOrder_.requests.size(), 3U);
}

TEST_F(Micro, ComesInTimeAtTheLastPoll) {
  windowOrder_.inFront = editor;
  comesToTheFrontAfter(499);
  [KRUtilities launchMicro:NO];
  EXPECT_EQ(linesOfMicro(), Lines{"wait count (Micro) = 499"});
}

TEST_F(Micro, WorksWithoutAnApplicationInFront) {
  comesToTheFrontAfter(3);
  [KRUtilities launchMicro:NO];
  EXPECT_EQ(linesOfMicro(), Lines{"wait count (Micro) = 3"});
  EXPECT_EQ(windowOrder_.requests, Requests{});
}

TEST_F(Micro, DoesNothingInFullScreenMode) {
  windowOrder_.inFront = editor;
  static_cast<void>([KRUtilities fullScreenMode]);
  menuBar_.handler(platform::kMenuBarHidden);
  [KRUtilities launchMicro:NO];
  EXPECT_EQ(applications_.calls(), Lines{});
  EXPECT_EQ(windowOrder_.requests, Requests{});
  EXPECT_EQ(linesOfMicro(), Lines{});
  menuBar_.handler(platform::kMenuBarShown);
}

NSString* nothing(id, SEL, NSString*, NSString*) {
  return nil;
}

TEST_F(Micro, ThatIsMissingIsLogged) {
  const auto missing =
      ReplacedMethod::ofInstances([NSBundle class], @selector(pathForResource:ofType:), nothing);
  windowOrder_.inFront = editor;
  [KRUtilities launchMicro:NO];
  ASSERT_EQ(linesOfMicro().size(), 1U);
  EXPECT_TRUE(linesOfMicro().front().starts_with("** Error while running Micro: "));
  EXPECT_EQ(windowOrder_.requests, Requests{});
  EXPECT_EQ(clock_.sleeps().size(), 0U);
}

BOOL raise(Class, SEL) {
  [NSException raise:NSGenericException format:@"nobody knows"];
  return NO;
}

TEST_F(Micro, ThatCannotAskForFullScreenModeLogsThatToo) {
  const auto raising = ReplacedMethod::ofClass([KRUtilities class], @selector(fullScreenMode), raise);
  [KRUtilities launchMicro:NO];
  ASSERT_EQ(linesOfMicro().size(), 1U);
  EXPECT_TRUE(linesOfMicro().front().starts_with("** Error while running Micro: "));
  EXPECT_NE(linesOfMicro().front().find("nobody knows"), std::string::npos);
  EXPECT_EQ(applications_.calls(), Lines{});
}

}  // namespace
}  // namespace kr::testing
