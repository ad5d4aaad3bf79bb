// A window on an X server of the program's own, to be drawn in and looked at. The toolkit connects to one
// server in its life: the server is started before the first test of the suite and ends after the last.
#pragma once

#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "tests/support/Desktop.h"

namespace kr::testing {

class DrawnWindow : public ::testing::Test {
 public:
  static void SetUpTestSuite();
  static void TearDownTestSuite();

 protected:
  static constexpr CGFloat kSide = 400;

  // What SetUpTestSuite() starts, for suites that need more.
  static void startDesktop(DesktopParts parts);

  DrawnWindow();
  ~DrawnWindow() override;

  // A view of the class in the window.
  template <typename View>
  View* add(Class type, NSRect frame) {
    View* view = [[[type alloc] initWithFrame:frame] autorelease];
    [[window_ contentView] addSubview:view];
    return view;
  }

  void show();

  // Handles events and timers for so long, or until the condition holds, which is the result.
  static void run(double seconds);
  static bool runUntil(const std::function<bool()>& condition, double seconds = 10);

  // What the view shows in its middle at the moment, as 0xRRGGBB; nothing is drawn for it.
  static int shownColor(NSView* view);

  static std::unique_ptr<Desktop> desktop_;
  NSWindow* window_ = nil;

 private:
  NSAutoreleasePool* pool_;
};

}  // namespace kr::testing
