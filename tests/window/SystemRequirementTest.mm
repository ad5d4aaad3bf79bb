// Products that need a newer system than the one that runs.
#import "installer/KRInstallerInterface.h"
#import "platform/cocoa/Bridging.h"
#include "platform/testing/InMemoryProcessTable.h"
#include "tests/support/ReplacedMethod.h"
#import "tests/window/WindowTest.h"

namespace kr::testing {
namespace {

using platform::VersionPart;

// Everything that quits the application, beside what it does before.
id gQuitSender;
std::size_t gCallsBeforeQuitting;
int gQuits;
platform::testing::RecordingApplications* gApplications;

void quit(NSApplication*, SEL, id sender) {
  ++gQuits;
  gQuitSender = sender;
  gCallsBeforeQuitting = gApplications->calls().size();
}

class SystemRequirement : public WindowTest {
 protected:
  SystemRequirement()
      : quit_(ReplacedMethod::ofInstances([NSApplication class], @selector(terminate:), quit)) {
    gApplications = &applications_;
    runOn(10, 12, 0);
  }

  void runOn(int major, int minor, int bugfix) {
    systemVersion_.parts = {
        {VersionPart::major, major}, {VersionPart::minor, minor}, {VersionPart::bugfix, bugfix}};
  }

  // A product whose bundle requires this system.
  std::string demandingProduct(const std::string& system) {
    const std::string path = product();
    scratch_.file("disk/Notes.app/Contents/Info.plist",
                  platform::testing::propertyListText({{"CFBundleSignature", "VmNt"},
                                                       {"CFBundleShortVersionString", "2.1"},
                                                       {"LSMinimumSystemVersion", system}}));
    return path;
  }

  [[nodiscard]] const platform::Alert& alert() const { return alerts_.shown.at(0).alert; }

  // Whether a product that requires one system may be installed on another.
  bool isMet(const std::string& system) {
    load({"-sourcePath", product(), "-minSystemVersion", system});
    EXPECT_EQ(alerts_.shown.empty(), controller_->systemRequirementMet != NO);
    return alerts_.shown.empty();
  }

 private:
  ReplacedMethod quit_;
};

TEST_F(SystemRequirement, IsMetByAnySystemWhenThereIsNone) {
  runOn(0, 0, 0);
  load({"-sourcePath", product()});
  EXPECT_TRUE(controller_->systemRequirementMet);
  EXPECT_EQ(alerts_.shown.size(), 0U);
  EXPECT_EQ(systemVersion_.questions, 0) << "there is nothing to compare it with";
}

TEST_F(SystemRequirement, IsMetByTheSameSystem) {
  runOn(10, 13, 0);
  EXPECT_TRUE(isMet("10.13"));
}

TEST_F(SystemRequirement, IsMetByANewerSystem) {
  runOn(10, 13, 1);
  EXPECT_TRUE(isMet("10.13"));
}

TEST_F(SystemRequirement, IsMetByANewerSystemWhoseNumberIsNoDecimal) {
  runOn(10, 13, 0);
  EXPECT_TRUE(isMet("10.9"));
}

TEST_F(SystemRequirement, IsNotMetByAnOlderSystem) {
  EXPECT_FALSE(isMet("10.13"));
}

TEST_F(SystemRequirement, IsNotMetByASystemThatLacksTheUpdate) {
  runOn(10, 13, 0);
  EXPECT_FALSE(isMet("10.13.1"));
}

TEST_F(SystemRequirement, IsNotMetByASystemThatDoesNotTellItsVersion) {
  systemVersion_.parts = {};
  EXPECT_FALSE(isMet("10.0"));
}

TEST_F(SystemRequirement, OfNothingIsMet) {
  EXPECT_TRUE(isMet(""));
}

TEST_F(SystemRequirement, ThatIsNotMetIsExplained) {
  load({"-sourcePath", product(), "-minSystemVersion", "10.13"});
  ASSERT_EQ(alerts_.shown.size(), 1U);
  EXPECT_EQ(alert().message,
            "Notes 2.1 cannot be installed on this computer because it requires Mac OS X 10.13 or newer.");
  EXPECT_EQ(alert().informative,
            "To check if an older version of Notes is available for your computer, please visit our software "
            "archive.");
  EXPECT_EQ(alert().buttons, (Lines{"Quit", "Visit Archive"}));
  EXPECT_EQ(alert().icon, "AlertStopIcon");
  EXPECT_NE([NSImage imageNamed:toNSString(alert().icon)], nil);
  EXPECT_EQ(alerts_.shown.at(0).window, [controller_ window]);
}

TEST_F(SystemRequirement, OfTheBundleCounts) {
  load({"-sourcePath", demandingProduct("10.14.2")});
  ASSERT_EQ(alerts_.shown.size(), 1U);
  EXPECT_NE(alert().message.find("Mac OS X 10.14.2 or"), std::string::npos);
  EXPECT_EQ([controller_ argument:KRInstallerKeyMinSystemVersion], nil) << "it is not stored";
}

TEST_F(SystemRequirement, OfTheArgumentsWinsOverThatOfTheBundle) {
  load({"-sourcePath", demandingProduct("10.14.2"), "-minSystemVersion", "10.12"});
  EXPECT_EQ(alerts_.shown.size(), 0U);
}

TEST_F(SystemRequirement, OfTheArgumentsWinsAlsoWhenTheBundleAsksForLess) {
  load({"-sourcePath", demandingProduct("10.1"), "-minSystemVersion", "10.13"});
  EXPECT_EQ(alerts_.shown.size(), 1U);
}

TEST_F(SystemRequirement, IsExplainedWithTheNameAndTheVersionOfTheArguments) {
  load({"-sourcePath", product(), "-minSystemVersion", "10.13", "-productName", "100% N\xFF", "-version",
        "3.0b1"});
  EXPECT_TRUE(alert().message.starts_with("100% N\xEF\xBF\xBD 3.0b1 cannot")) << alert().message;
  EXPECT_NE(alert().informative.find("of 100% N\xEF\xBF\xBD is"), std::string::npos) << alert().informative;
}

TEST_F(SystemRequirement, IsExplainedWithoutAVersionAsFormatsPrintAMissingOne) {
  load({"-sourcePath", scratch_.folder("Plain.app"), "-productCode", "AAAA", "-minSystemVersion", "10.13"});
  EXPECT_TRUE(alert().message.starts_with("Plain (null) cannot be installed")) << alert().message;
}

TEST_F(SystemRequirement, IsExplainedWhenEverythingElseIsSetUp) {
  bool checked = false;
  // The controller is not known before the file is loaded.
  alerts_.whenShown = [&] {
    auto* controller = static_cast<InstallerWinController*>([NSApp delegate]);
    NSWindow* window = [controller window];
    EXPECT_TRUE([window isVisible]);
    EXPECT_TRUE(log_.lines().back().starts_with("Updated arguments: "));
    EXPECT_TRUE([controller->checkmarkField isHidden]);
    EXPECT_EQ([controller->tabView indexOfTabViewItem:[controller->tabView selectedTabViewItem]], 0);
    EXPECT_EQ(text(controller->pathField), scratch_ / "Applications/Notes.app");
    EXPECT_EQ(windowOrder_.requests.size(), 1U) << "the installer was brought to the front";
    checked = true;
  };
  const platform::SerialNumber self{1, 7};
  processes_.add({.pid = 7, .name = "Installer", .serial = self});
  processes_.setCurrent(self);
  load({"-sourcePath", product(), "-minSystemVersion", "10.13", "-readMePath",
        scratch_.file("readme.txt", "words")});
  EXPECT_TRUE(checked);
}

TEST_F(SystemRequirement, IsNoMatterAfterAnErrorOfTheSetup) {
  load({"-sourcePath", scratch_.folder("Plain.app"), "-minSystemVersion", "10.13"});
  EXPECT_TRUE(logHas("missing product signature"));
  EXPECT_FALSE(controller_->systemRequirementMet);
  EXPECT_EQ(alerts_.shown.size(), 0U);
}

TEST_F(SystemRequirement, ThatIsNotMetQuitsTheInstaller) {
  load({"-sourcePath", product(), "-minSystemVersion", "10.13"});
  EXPECT_EQ(gQuits, 0);
  alerts_.answer(1000);
  EXPECT_EQ(gQuits, 1);
  EXPECT_EQ(gQuitSender, controller_);
  EXPECT_EQ(applications_.calls(), Lines{});
}

TEST_F(SystemRequirement, ThatIsNotMetMayLeadToTheArchiveFirst) {
  load({"-sourcePath", product(), "-minSystemVersion", "10.13"});
  alerts_.answer(1001);
  EXPECT_EQ(applications_.calls(), Lines{"openAddress https://www.velmora.example/downloads/archive/"});
  EXPECT_EQ(gQuits, 1);
  EXPECT_EQ(gQuitSender, controller_);
  EXPECT_EQ(gCallsBeforeQuitting, 1U);
}

TEST_F(SystemRequirement, ThatIsNotMetQuitsWhateverTheAlertAnswers) {
  load({"-sourcePath", product()});
  [controller_ systemVersionAlertDidEnd:nil returnCode:-1 contextInfo:&gQuits];
  EXPECT_EQ(gQuits, 1);
  EXPECT_EQ(applications_.calls(), Lines{});
}

}  // namespace
}  // namespace kr::testing
