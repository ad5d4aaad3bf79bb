// The utilities on a real desktop with real applications, and an autorelease pool around each test. The log
// is recorded; distributed notifications stay inside the program, so that nothing is started for them.
#pragma once

#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#import "library/process/KRProcess.h"
#include "platform/Services.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/Child.h"
#include "tests/support/Desktop.h"
#include "tests/support/Eventually.h"
#import "tests/support/ReplacedMethod.h"
#import "tests/support/RunLoop.h"
#include "tests/support/TestApplication.h"
#include "tests/support/WindowView.h"

namespace kr::testing {

class LiveDesktop : public ::testing::Test {
 protected:
  LiveDesktop()
      : pool_([[NSAutoreleasePool alloc] init]),
        center_(ReplacedMethod::ofClass([NSDistributedNotificationCenter class], @selector(defaultCenter),
                                        ownCenter)) {
    platform::Services set = platform::services();
    set.log = &log;
    services_.emplace(set);
  }
  ~LiveDesktop() override { [pool_ release]; }

  static NSNotificationCenter* ownCenter(Class, SEL) {
    static NSNotificationCenter* center = [[NSNotificationCenter alloc] init];
    return center;
  }

  // An application with one window, which is in front once this returns.
  std::unique_ptr<TestApplication> open(const std::string& name, const std::string& window) {
    auto application = std::make_unique<TestApplication>(
        folder, name, BundleInformation{}, std::vector<std::string>{"copies", "window", window});
    EXPECT_TRUE(eventually([&] { return view.active() == window; })) << view.active();
    return application;
  }

  void activate(const std::string& window) {
    Child tool({"xdotool", "search", "--name", "^" + window + "$", "windowactivate"});
    const auto status = tool.wait(10.0);
    ASSERT_TRUE(status && *status == 0) << window;
    ASSERT_TRUE(eventuallyInRunLoop([&] { return view.active() == window; })) << view.active();
  }

  // The lines of the log with this text in them.
  std::vector<std::string> linesWith(const std::string& text) const {
    std::vector<std::string> result;
    for (const std::string& line : log.lines()) {
      if (line.find(text) != std::string::npos) result.push_back(line);
    }
    return result;
  }

  Desktop desktop{{.windowManager = true}};
  ScratchFolder folder;
  WindowView view;
  platform::testing::RecordingLog log;

 private:
  NSAutoreleasePool* pool_;
  ReplacedMethod center_;
  std::optional<platform::ScopedServices> services_;
};

}  // namespace kr::testing
