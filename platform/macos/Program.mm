#include "platform/Program.h"

#import <Foundation/Foundation.h>

#include "platform/SystemServices.h"
#import "platform/cocoa/Bridging.h"

namespace kr::platform {
namespace {

class MainBundle final : public Program {
 public:
  std::vector<std::string> arguments() override {
    @autoreleasepool {
      return toByteStrings([[NSProcessInfo processInfo] arguments]);
    }
  }

  std::string bundlePath() override {
    @autoreleasepool {
      return toBytes([[NSBundle mainBundle] bundlePath]);
    }
  }
};

}  // namespace

Program& systemProgram() noexcept {
  static MainBundle program;
  return program;
}

}  // namespace kr::platform
