#include "platform/StandardFolders.h"

#import <Foundation/Foundation.h>

#include "platform/SystemServices.h"
#import "platform/cocoa/Bridging.h"
#import "platform/macos/FileText.h"

namespace kr::platform {
namespace {

std::optional<std::string> applicationsFolder(NSSearchPathDomainMask domain) {
  @autoreleasepool {
    return toOptionalBytes(
        [NSSearchPathForDirectoriesInDomains(NSApplicationDirectory, domain, YES) lastObject]);
  }
}

class CocoaFolders final : public StandardFolders {
 public:
  std::string home() override {
    @autoreleasepool {
      return toBytes(NSHomeDirectory());
    }
  }

  std::optional<std::string> localApplications() override { return applicationsFolder(NSLocalDomainMask); }
  std::optional<std::string> userApplications() override { return applicationsFolder(NSUserDomainMask); }

  std::string displayName(const std::string& path) override {
    @autoreleasepool {
      return toBytes([[NSFileManager defaultManager] displayNameAtPath:macos::cocoaText(path)]);
    }
  }
};

}  // namespace

StandardFolders& systemStandardFolders() noexcept {
  static CocoaFolders folders;
  return folders;
}

}  // namespace kr::platform
