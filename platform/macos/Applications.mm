#include "platform/Applications.h"

#import <AppKit/AppKit.h>

#include "platform/Log.h"
#include "platform/SystemServices.h"
#import "platform/macos/FileText.h"

namespace kr::platform {
namespace {

NSString* const kOpener = @"/usr/bin/open";

class WorkspaceApplications final : public Applications {
 public:
  std::int32_t registerApplication(const std::string& path) override {
    @autoreleasepool {
      return LSRegisterURL((CFURLRef)[NSURL fileURLWithPath:macos::cocoaText(path)], true);
    }
  }

  bool open(const std::string& path) override {
    @autoreleasepool {
      return [[NSWorkspace sharedWorkspace] openFile:macos::cocoaText(path)] != NO;
    }
  }

  void openInBackground(const std::string& path) override {
    @autoreleasepool {
      [NSTask launchedTaskWithLaunchPath:kOpener arguments:@[ macos::cocoaText(path) ]];
    }
  }

  bool openAddress(const std::string& address) override {
    @autoreleasepool {
      NSURL* url = [NSURL URLWithString:macos::cocoaText(address)];
      if (url != nil && [[NSWorkspace sharedWorkspace] openURL:url]) return true;
      log("could not open %@", address);
      return false;
    }
  }

  void noteFileSystemChanged(const std::string& path) override {
    @autoreleasepool {
      [[NSWorkspace sharedWorkspace] noteFileSystemChanged:macos::cocoaText(path)];
    }
  }
};

}  // namespace

Applications& systemApplications() noexcept {
  static WorkspaceApplications applications;
  return applications;
}

}  // namespace kr::platform
