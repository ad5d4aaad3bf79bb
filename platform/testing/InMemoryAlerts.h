// Keeps the alerts that it is asked to show; the test presses their buttons. Objective-C++ only.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>
#include <utility>
#include <vector>

#import "platform/cocoa/Alerts.h"

namespace kr::platform::testing {

class InMemoryAlerts final : public Alerts {
 public:
  struct Shown {
    Alert alert;
    NSWindow* window;  // not owned
    Ended ended;
  };

  // Every alert so far, oldest first.
  std::vector<Shown> shown;

  // Called when an alert is to be shown.
  std::function<void()> whenShown = [] {};

  void beginSheet(const Alert& alert, NSWindow* window, Ended ended) override {
    shown.push_back({alert, window, std::move(ended)});
    whenShown();
  }

  // The user presses the button that answers this code.
  void answer(NSInteger code) { shown.back().ended(nil, code); }
};

}  // namespace kr::platform::testing
