// What the window does from Install to the result.
#include <algorithm>

#include <sys/stat.h>
#include <unistd.h>

#import "platform/cocoa/Bridging.h"
#include "platform/posix/Files.h"
#import "tests/window/WindowTest.h"

namespace kr::testing {
namespace {

constexpr std::uint32_t kNotes = 0x566D4E74;  // 'VmNt'

class InstallationInTheWindow : public WindowTest {
 protected:
  void loadAndPressInstall(const Lines& more = {}) {
    Lines arguments{"-sourcePath", product(), "-version", "2.1"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    load(arguments);
    press(controller_->installButton);
    EXPECT_FALSE([controller_->installButton isEnabled]);
    EXPECT_FALSE([controller_->cancelButton isEnabled]);
    EXPECT_TRUE(runUntil([&] { return [controller_->installButton isEnabled]; }));
  }

  void expectReadyForAnotherTry(const std::string& message) {
    EXPECT_EQ(text(controller_->messageField), message);
    EXPECT_TRUE([controller_->messageField isHidden]) << "it stays as it was";
    EXPECT_TRUE([controller_->cancelButton isEnabled]);
    EXPECT_EQ(title(controller_->installButton), "Install");
    EXPECT_FALSE(controller_->finished);
    EXPECT_EQ(page(), 1);
  }

  std::string destination() { return scratch_ / "Applications/Notes.app"; }
};

TEST_F(InstallationInTheWindow, ASuccessTurnsIntoTheFinalPage) {
  loadAndPressInstall();
  EXPECT_EQ(text(controller_->introField), "Notes was successfully installed.");
  EXPECT_FALSE([controller_->checkmarkField isHidden]);
  EXPECT_TRUE([controller_->cancelButton isHidden]);
  EXPECT_FALSE([controller_->cancelButton isEnabled]);
  EXPECT_TRUE([controller_->pathField isHidden]);
  EXPECT_TRUE([controller_->explanationField isHidden]);
  EXPECT_TRUE([controller_->messageField isHidden]);
  EXPECT_TRUE([controller_->helpButton isHidden]);
  EXPECT_EQ(title(controller_->installButton), "OK");
  EXPECT_TRUE(controller_->finished);
  EXPECT_TRUE(files::exists(destination() + "/Contents/MacOS/Notes"));
  EXPECT_EQ(applications_.calls(),
            (Lines{"noteFileSystemChanged " + destination(), "noteFileSystemChanged " + destination(),
                   "register " + destination(), "open " + destination()}));
  EXPECT_EQ(toBytes([InstallerWinController installationInProgress]), "Notes 2.1");
}

TEST_F(InstallationInTheWindow, TheTagNamesAMissingVersionAsSuch) {
  load({"-sourcePath", product()});
  EXPECT_EQ([InstallerWinController installationInProgress], nil);
  press(controller_->installButton);
  EXPECT_TRUE(runUntil([&] { return [controller_->installButton isEnabled]; }));
  EXPECT_EQ(toBytes([InstallerWinController installationInProgress]), "Notes (null)");
}

TEST_F(InstallationInTheWindow, ACopyThatRefusesToQuitCancelsTheInstallation) {
  processes_.add({.pid = 100, .signature = kNotes, .name = "Old Notes", .path = "/opt/Old Notes.app"});
  processControl_.setManners(100, {.politeRequests = platform::testing::kNeverEnds,
                                   .forcedRequests = platform::testing::kNeverEnds});
  loadAndPressInstall({"-destinationPath", destination()});
  expectReadyForAnotherTry(
      "Old Notes cannot be running during the installation.\rQuit Old Notes, then click \"Install\" again.");
  EXPECT_TRUE(logHas("Still running 'VmNt': Old Notes"));
  EXPECT_TRUE(logHas("Old Notes did not quit; will retry"));
  EXPECT_TRUE(logHas("Old Notes refused to quit; installation cancelled"));
  EXPECT_FALSE(files::itemExists(destination()));

  processes_.endPID(100);
  press(controller_->installButton);
  EXPECT_TRUE(runUntil([&] { return controller_->finished; })) << "the second try succeeds";
}

TEST_F(InstallationInTheWindow, EveryRunningCopyIsAskedAndTheInstallerIsNot) {
  const auto self = processes_.add({.pid = 50, .signature = kNotes, .name = "Installer", .path = "/i.app"});
  processes_.setCurrent(self);
  processes_.add({.pid = 100, .signature = kNotes, .name = "One", .path = "/one.app"});
  processes_.add({.pid = 101, .signature = 0x41414141, .name = "Two", .path = "/two.app"});
  processes_.add({.pid = 102, .signature = 0x42424242, .name = "Other", .path = "/other.app"});
  loadAndPressInstall({"-destinationPath", destination(), "-quitCode", "AAAA"});
  EXPECT_TRUE(controller_->finished);
  EXPECT_TRUE(logHas("Quitting 'VmNt': One"));
  EXPECT_TRUE(logHas("Quitting 'AAAA': Two"));
  EXPECT_EQ(processControl_.politeRequests(100), 1);
  EXPECT_EQ(processControl_.politeRequests(101), 1);
  EXPECT_EQ(processControl_.politeRequests(50), 0);
  EXPECT_EQ(processControl_.politeRequests(102), 0);
}

TEST_F(InstallationInTheWindow, RequestsToQuitAreATenthOfASecondApart) {
  processes_.add({.pid = 100, .signature = kNotes, .name = "One", .path = "/one.app"});
  processes_.add({.pid = 101, .signature = kNotes, .name = "Two", .path = "/two.app"});
  loadAndPressInstall({"-destinationPath", destination()});
  EXPECT_EQ(std::count(clock_.sleeps().begin(), clock_.sleeps().end(), 0.1), 2);
}

TEST_F(InstallationInTheWindow, TheFirstCopyThatStillRunsIsNamed) {
  for (const pid_t pid : {100, 101}) {
    processes_.add({.pid = pid, .signature = kNotes, .name = pid == 100 ? "One" : "Two", .path = "/x.app"});
    processControl_.setManners(pid, {.politeRequests = platform::testing::kNeverEnds,
                                     .forcedRequests = platform::testing::kNeverEnds});
  }
  loadAndPressInstall({"-destinationPath", destination()});
  EXPECT_TRUE(logHas("One refused to quit; installation cancelled"));
  EXPECT_FALSE(logHas("Two refused to quit; installation cancelled"));
}

TEST_F(InstallationInTheWindow, ProgramsWithoutASignatureAreLeftAlone) {
  processes_.add({.pid = 100, .signature = 0x3F3F3F3F, .name = "Terminal", .path = "/usr/bin/terminal"});
  processes_.add({.pid = 101, .signature = 0, .name = "Ended", .path = "/usr/bin/ended"});
  loadAndPressInstall({"-destinationPath", destination(), "-quitCode", "????", "abc"});
  EXPECT_TRUE(controller_->finished);
  EXPECT_EQ(processControl_.politeRequests(100), 0);
  EXPECT_EQ(processControl_.politeRequests(101), 0);
}

TEST_F(InstallationInTheWindow, NoListOfSignaturesHoldsAny) {
  load({"-sourcePath", product()});
  EXPECT_FALSE([controller_ signature:kNotes isInArray:nil]);
  EXPECT_FALSE([controller_ signature:kNotes isInArray:@[]]);
  EXPECT_TRUE(([controller_ signature:kNotes isInArray:@[ @"AAAA", @"VmNt" ]]));
}

TEST_F(InstallationInTheWindow, TheInstallersFrontWindowComesForwardAgainInTheEnd) {
  const auto self =
      processes_.add({.pid = 50, .signature = 0x566D496E, .name = "Installer", .path = "/i.app"});
  processes_.setCurrent(self);
  loadAndPressInstall();
  using platform::testing::WindowRequest;
  EXPECT_EQ(windowOrder_.requests,
            (std::vector<WindowRequest>{{WindowRequest::Kind::front, self},
                                        {WindowRequest::Kind::frontWindowOnly, self}}));
}

TEST_F(InstallationInTheWindow, AFailedCopyExplainsItselfAndHowToCopyByHand) {
  const std::string source = product();
  ASSERT_EQ(::mkfifo((source + "/Contents/fifo").c_str(), 0600), 0);
  loadAndPressInstall();
  expectReadyForAnotherTry(
      "Installation failed.\rTry installing Notes manually by copying it to the Applications folder.");
  EXPECT_TRUE(logHas("ERROR -- Could not copy myself to " + destination()));
  EXPECT_FALSE(files::itemExists(destination()));
}

TEST_F(InstallationInTheWindow, WithAWrapperThereIsNoHintToCopyByHand) {
  const std::string wrapper = scratch_.folder("disk/Notes Folder");
  ASSERT_EQ(::mkfifo((wrapper + "/fifo").c_str(), 0600), 0);
  loadAndPressInstall({"-wrapperPath", wrapper});
  expectReadyForAnotherTry("Installation failed.");
}

TEST_F(InstallationInTheWindow, AnExistingCopyThatCannotBeTrashedIsKept) {
  scratch_.file("Applications/Notes.app/old");
  scratch_.file("home/.local/share/Trash", "a file in place of the Trash");
  loadAndPressInstall();
  expectReadyForAnotherTry("Could not delete existing copy.\rTry installing Notes manually by copying it to "
                           "the Applications folder.");
  EXPECT_TRUE(files::exists(destination() + "/old"));
}

TEST_F(InstallationInTheWindow, AFolderThatMayNotBeWrittenNeedsAuthorization) {
  if (::geteuid() == 0) GTEST_SKIP() << "root writes every folder";
  ASSERT_EQ(::chmod((scratch_ / "Applications").c_str(), 0555), 0);
  loadAndPressInstall({"-destinationPath", destination()});
  expectReadyForAnotherTry(
      "Authorized copying failed.\rTry installing Notes manually by copying it to the Applications folder.");
  EXPECT_TRUE(logHas("Cannot write to folder " + scratch_ / "Applications"));
  EXPECT_TRUE(logHas("ERROR -- Could not copy myself to /Applications with authorization"));
}

TEST_F(InstallationInTheWindow, AProductThatNeverOpensIsASuccess) {
  applications_.opensAfterAttempts = 0;
  loadAndPressInstall();
  EXPECT_TRUE(controller_->finished);
  EXPECT_TRUE(logHas("retry opening (count=10)"));
}

TEST_F(InstallationInTheWindow, ProgressIsShownWhileItLasts) {
  load({"-sourcePath", product()});
  NSProgressIndicator* bar = controller_->progressIndicator;
  EXPECT_TRUE([bar isIndeterminate]);
  EXPECT_FALSE([bar isDisplayedWhenStopped]);
  [controller_ animateProgress:@"YES"];
  [controller_ animateProgress:nil];
}

TEST_F(InstallationInTheWindow, TheReadMePageLeadsToTheInstallPageAndBack) {
  load({"-sourcePath", product(), "-readMePath", scratch_.file("readme.txt", "words")});
  EXPECT_EQ(page(), 0);
  press(controller_->installButton);
  EXPECT_EQ(page(), 1);
  EXPECT_EQ(title(controller_->installButton), "Install");
  EXPECT_EQ(title(controller_->cancelButton), "Go Back");
  press(controller_->cancelButton);
  EXPECT_EQ(page(), 0);
  EXPECT_FALSE(logHas("Install")) << "nothing was installed on the way";
}

TEST_F(InstallationInTheWindow, TheApplicationEndsWithItsLastWindow) {
  load({"-sourcePath", product()});
  EXPECT_TRUE([controller_ applicationShouldTerminateAfterLastWindowClosed:NSApp]);
  EXPECT_TRUE([controller_ application:NSApp openFile:@"AAAA"]) << "a bare word is no file to open";
}

}  // namespace
}  // namespace kr::testing
