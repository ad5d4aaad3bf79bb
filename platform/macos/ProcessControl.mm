#include "platform/ProcessControl.h"

#import <AppKit/AppKit.h>

#include "platform/SystemServices.h"

namespace kr::platform {
namespace {

class HeldApplication final : public RunningApplication {
 public:
  explicit HeldApplication(NSRunningApplication* application) : application_([application retain]) {}
  ~HeldApplication() override { [application_ release]; }
  HeldApplication(const HeldApplication&) = delete;
  HeldApplication& operator=(const HeldApplication&) = delete;

  // These are called every millisecond while an application is on its way out, on threads without a run loop.
  bool terminate() override {
    @autoreleasepool {
      return [application_ terminate] != NO;
    }
  }

  bool forceTerminate() override {
    @autoreleasepool {
      return [application_ forceTerminate] != NO;
    }
  }

  bool isTerminated() override {
    @autoreleasepool {
      return [application_ isTerminated] != NO;
    }
  }

 private:
  NSRunningApplication* application_;
};

// By name: the class came with 10.6, and this library's callers need not have it.
Class runningApplicationClass() {
  return NSClassFromString(@"NSRunningApplication");
}

class RunningApplications final : public ProcessControl {
 public:
  bool isAvailable() override { return runningApplicationClass() != Nil; }

  std::unique_ptr<RunningApplication> running(pid_t pid) override {
    @autoreleasepool {
      NSRunningApplication* application =
          [runningApplicationClass() runningApplicationWithProcessIdentifier:pid];
      if (application == nil) return nullptr;
      return std::make_unique<HeldApplication>(application);
    }
  }
};

}  // namespace

ProcessControl& systemProcessControl() noexcept {
  static RunningApplications applications;
  return applications;
}

}  // namespace kr::platform
