#include "platform/Program.h"

#import <Foundation/Foundation.h>
#include <sys/sysctl.h>
#include <unistd.h>

#include <array>

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

  bool isDebugged() override {
    std::array<int, 4> name{CTL_KERN, KERN_PROC, KERN_PROC_PID, ::getpid()};
    kinfo_proc process{};
    std::size_t size = sizeof process;
    return ::sysctl(name.data(), name.size(), &process, &size, nullptr, 0) == 0 &&
           (process.kp_proc.p_flag & P_TRACED) != 0;
  }
};

}  // namespace

Program& systemProgram() noexcept {
  static MainBundle program;
  return program;
}

}  // namespace kr::platform
