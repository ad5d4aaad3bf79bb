#include "platform/SecureInput.h"

#import <Foundation/Foundation.h>

#include "platform/SystemServices.h"
#import "platform/cocoa/Bridging.h"

namespace kr::platform {
namespace {

NSString* const kSource = @"return do shell script \"ioreg -l -w 0 | grep SecureInput\"";

class RegistryReport final : public SecureInput {
 public:
  std::optional<std::string> report() override {
    @autoreleasepool {
      NSAppleScript* script = [[[NSAppleScript alloc] initWithSource:kSource] autorelease];
      return toOptionalBytes([[script executeAndReturnError:nil] stringValue]);
    }
  }
};

}  // namespace

SecureInput& systemSecureInput() noexcept {
  static RegistryReport input;
  return input;
}

}  // namespace kr::platform
