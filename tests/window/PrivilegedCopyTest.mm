// What the window does with an installation that needs administrator rights.
#include <signal.h>

#include "platform/Applications.h"
#include "platform/SystemServices.h"
#import "platform/cocoa/Bridging.h"
#include "platform/testing/InMemoryAuthorization.h"
#include "platform/testing/RecordingFileOperations.h"
#import "tests/window/WindowTest.h"

// Stands in the window for the one whose animation it writes down.
@interface RecordingIndicator : NSProgressIndicator {
 @public
  std::vector<std::string> calls;
}
@end

@implementation RecordingIndicator
- (void)startAnimation:(id)sender {
  calls.push_back("start");
}
- (void)stopAnimation:(id)sender {
  calls.push_back("stop");
}
@end

namespace kr::testing {
namespace {

constexpr const char* kManualHint =
    "\rTry installing Notes manually by copying it to the Applications folder.";
constexpr const char* kError = "ERROR -- Could not copy myself to /Applications with authorization";

class PrivilegedCopyInTheWindow : public WindowTest {
 protected:
  PrivilegedCopyInTheWindow() {
    platform::Services set = platform::services();
    set.authorization = &authorization_;
    set.files = &files_;
    scope_.emplace(set);
    files_.writable[folder_] = false;
    authorization_.tool = [] { return 0; };
  }
  ~PrivilegedCopyInTheWindow() override {
    scope_.reset();
    [indicator_ release];
  }

  void loadProduct(const Lines& more = {}) {
    Lines arguments{"-sourcePath", product(), "-destinationPath", destination_};
    arguments.insert(arguments.end(), more.begin(), more.end());
    load(arguments);
    indicator_ = [[RecordingIndicator alloc] initWithFrame:NSMakeRect(0, 0, 10, 10)];
    controller_->progressIndicator = indicator_;
  }

  void pressInstall() {
    press(controller_->installButton);
    EXPECT_TRUE(runUntil([&] { return [controller_->installButton isEnabled]; }));
  }

  void expectFailure(const std::string& message) {
    EXPECT_EQ(text(controller_->messageField), message);
    EXPECT_TRUE([controller_->cancelButton isEnabled]);
    EXPECT_EQ(title(controller_->installButton), "Install");
    EXPECT_FALSE(controller_->finished);
    EXPECT_EQ(opened(), Lines{}) << "nothing is registered or launched";
  }

  Lines opened() const { return applications_.calls(); }

  // The modifier keys that the application's current event has.
  void holdKeys(NSUInteger modifiers) {
    NSEvent* event = [NSEvent otherEventWithType:NSApplicationDefined
                                        location:NSZeroPoint
                                   modifierFlags:modifiers
                                       timestamp:0
                                    windowNumber:0
                                         context:nil
                                         subtype:0
                                           data1:0
                                           data2:0];
    [NSApp postEvent:event atStart:YES];
    ASSERT_TRUE([NSApp nextEventMatchingMask:NSApplicationDefinedMask
                                   untilDate:[NSDate distantPast]
                                      inMode:NSDefaultRunLoopMode
                                     dequeue:YES] != nil);
  }

  const std::string folder_ = scratch_.folder("Applications");
  const std::string destination_ = folder_ + "/Notes.app";
  Lines fileCalls_;
  platform::testing::RecordingFileOperations files_{fileCalls_, &platform::systemFileOperations()};
  Lines calls_;
  platform::testing::InMemoryAuthorization authorization_{calls_};
  RecordingIndicator* indicator_ = nil;

 private:
  std::optional<platform::ScopedServices> scope_;
};

TEST_F(PrivilegedCopyInTheWindow, TheToolCopiesWhatTheUserMayNot) {
  loadProduct();
  pressInstall();
  EXPECT_EQ(text(controller_->introField), "Notes was successfully installed.");
  EXPECT_TRUE(logHas("Cannot write to folder " + folder_));
  EXPECT_TRUE(logHas("successfully copied"));
  EXPECT_EQ(fileCalls_, Lines{}) << "the installer itself copies nothing";
  ASSERT_EQ(calls_.size(), 4U);
  const std::string tool = toBytes([[NSBundle mainBundle] pathForResource:@"train" ofType:@""]);
  EXPECT_EQ(calls_[0], "create " + tool);
  EXPECT_EQ(calls_[1], "obtain system.privilege.admin 19");
  EXPECT_EQ(calls_[2], "execute " + tool + " [" + scratch_ / "disk/Notes.app" + "] [" + destination_ + "]");
  EXPECT_EQ(calls_[3], "free");
  EXPECT_EQ(opened(), (Lines{"noteFileSystemChanged " + destination_, "register " + destination_,
                             "open " + destination_}));
}

TEST_F(PrivilegedCopyInTheWindow, NothingMovesBehindTheDialog) {
  loadProduct();
  pressInstall();
  EXPECT_EQ(indicator_->calls, (Lines{"start", "stop", "start", "stop"}));
}

TEST_F(PrivilegedCopyInTheWindow, AnEarlyEndLeavesTheAnimationStopped) {
  authorization_.rightStatus = -60005;
  loadProduct();
  pressInstall();
  EXPECT_EQ(indicator_->calls, (Lines{"start", "stop", "stop"}));
}

TEST_F(PrivilegedCopyInTheWindow, ADismissedDialogShowsNothing) {
  authorization_.rightStatus = -60006;
  loadProduct();
  pressInstall();
  expectFailure("");
  EXPECT_EQ(log_.lines().back(), "User canceled authorization");
  EXPECT_FALSE(logHas(kError));
}

TEST_F(PrivilegedCopyInTheWindow, ARefusalIsExplained) {
  authorization_.rightStatus = -60005;
  loadProduct();
  pressInstall();
  expectFailure("Authorized copying failed." + std::string(kManualHint));
  EXPECT_EQ(log_.lines().back(), kError);
  EXPECT_FALSE(logHas("User canceled authorization"));
}

TEST_F(PrivilegedCopyInTheWindow, WithoutAReferenceItFails) {
  authorization_.available = false;
  loadProduct();
  pressInstall();
  expectFailure("Authorized copying failed." + std::string(kManualHint));
}

TEST_F(PrivilegedCopyInTheWindow, AToolThatFailsIsExplained) {
  authorization_.tool = [] { return 1; };
  loadProduct();
  pressInstall();
  expectFailure("Authorized copying failed." + std::string(kManualHint));
  EXPECT_TRUE(logHas("WEXITSTATUS"));
  EXPECT_EQ(log_.lines().back(), kError);
}

TEST_F(PrivilegedCopyInTheWindow, WithAWrapperTheToolTakesThreePathsAndThereIsNoHint) {
  authorization_.tool = [] { return ::raise(SIGKILL); };
  files_.writable[folder_ + "/Notes Folder"] = false;
  const std::string wrapper = scratch_.folder("disk/Notes Folder");
  loadProduct({"-wrapperPath", wrapper});
  pressInstall();
  expectFailure("Authorized copying failed.");
  EXPECT_TRUE(logHas("!WIFEXITED"));
  EXPECT_TRUE(calls_.at(2).ends_with("] [" + folder_ + "/Notes Folder/Notes.app] [" + wrapper + "]"))
      << calls_[2];
}

TEST_F(PrivilegedCopyInTheWindow, OptionHasTheToolCopyWhatTheUserMayWriteToo) {
  files_.writable[folder_] = true;
  loadProduct();
  holdKeys(0x80000 | NSShiftKeyMask);
  EXPECT_EQ([controller_ installMyselfInDestination], nil);
  EXPECT_TRUE(logHas("enforcing authorization"));
  EXPECT_EQ(calls_.size(), 4U);
  EXPECT_EQ(fileCalls_, Lines{});
}

TEST_F(PrivilegedCopyInTheWindow, OtherKeysEnforceNothing) {
  files_.writable[folder_] = true;
  loadProduct();
  holdKeys(NSShiftKeyMask | NSControlKeyMask | NSCommandKeyMask | NSAlphaShiftKeyMask);
  EXPECT_EQ([controller_ installMyselfInDestination], nil);
  EXPECT_FALSE(logHas("enforcing authorization"));
  EXPECT_EQ(calls_, Lines{});
  EXPECT_EQ(fileCalls_.size(), 1U);
}

TEST_F(PrivilegedCopyInTheWindow, TheCallerHearsOfACancellationOnly) {
  loadProduct();
  NSString* source = toNSString(scratch_ / "disk/Notes.app");
  NSString* destination = toNSString(destination_);
  BOOL canceled = YES;
  EXPECT_TRUE([controller_ authorizedInstall:source to:destination wrap:nil canceled:&canceled]);
  EXPECT_FALSE(canceled);
  EXPECT_TRUE([controller_ authorizedInstall:source to:destination wrap:nil canceled:nullptr]);
  authorization_.rightStatus = -60006;
  EXPECT_FALSE([controller_ authorizedInstall:source to:destination wrap:nil canceled:&canceled]);
  EXPECT_TRUE(canceled);
  EXPECT_FALSE([controller_ authorizedInstall:source to:destination wrap:nil canceled:nullptr]);

  calls_.clear();
  for (NSString* blank in @[ @"", @"   ", @"\t\n" ]) {
    canceled = YES;
    EXPECT_FALSE([controller_ authorizedInstall:source to:blank wrap:nil canceled:&canceled]);
    EXPECT_FALSE(canceled);
    EXPECT_FALSE([controller_ authorizedInstall:blank to:destination wrap:nil canceled:nullptr]);
  }
  EXPECT_FALSE([controller_ authorizedInstall:source to:nil wrap:nil canceled:nullptr]);
  EXPECT_FALSE([controller_ authorizedInstall:nil to:destination wrap:nil canceled:nullptr]);
  EXPECT_EQ(calls_, Lines{}) << "no right is asked for";
}

}  // namespace
}  // namespace kr::testing
