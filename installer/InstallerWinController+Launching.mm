#import "installer/InstallerWinController.h"

#include "installer/ProductLaunch.h"
#import "library/process/KRProcess.h"
#include "platform/Applications.h"
#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"

namespace {

// The description of an exception that a step of the platform raised; it goes into the log and no further.
std::optional<std::string> textOf(NSException* exception) {
  return kr::toBytes([exception description]);
}

class WorkspaceSteps final : public kr::LaunchSteps {
 public:
  explicit WorkspaceSteps(std::string destination) : destination_(std::move(destination)) {}

  kr::Guarded<std::int32_t> registerProduct() override {
    @try {
      return {kr::platform::services().applications->registerApplication(destination_), {}};
    } @catch (NSException* exception) {
      return {0, textOf(exception)};
    }
  }

  kr::Guarded<bool> hasIcon() override {
    @try {
      NSString* path = kr::toDisplayText(kr::toNSString(std::string_view(destination_)));
      return {[[NSWorkspace sharedWorkspace] iconForFile:path] != nil, {}};
    } @catch (NSException* exception) {
      return {false, textOf(exception)};
    }
  }

  kr::Guarded<bool> open() override {
    @try {
      return {kr::platform::services().applications->open(destination_), {}};
    } @catch (NSException* exception) {
      return {false, textOf(exception)};
    }
  }

  void bringInstallerForward() override { [[KRProcess currentProcess] setFrontProcessFrontWindowOnly]; }

 private:
  std::string destination_;
};

}  // namespace

@implementation InstallerWinController (Launching)

- (void)launchInstalledProduct:(NSString*)destination {
  WorkspaceSteps steps(kr::toBytes(destination));
  kr::launchProduct(kr::toBytes(destination), steps);
}

@end
