// The real user-interface file on an X server of the test's own, with the system's services replaced where
// the test says so. Loading works once per process: CTest runs every case as a process of its own.
#pragma once

#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#import "installer/InstallerWinController.h"
#include "platform/Services.h"
#include "platform/testing/FixedDesktop.h"
#import "platform/testing/InMemoryAlerts.h"
#include "platform/testing/InMemoryProcessControl.h"
#include "platform/testing/InMemoryProcessTable.h"
#include "platform/testing/InMemoryWindowOrder.h"
#include "platform/testing/ManualClock.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/Desktop.h"
#include "tests/support/ScratchFolder.h"

namespace kr::testing {

using Lines = std::vector<std::string>;

class WindowTest : public ::testing::Test {
 protected:
  // With a session bus where Apple events are to be received.
  explicit WindowTest(bool withBus = false);
  ~WindowTest() override;

  // A product with an information file; its path.
  std::string product(const std::string& name = "Notes.app");

  // Loads the user-interface file with this command line behind the program's path. The first two words make
  // the log that of the test: nothing is redirected.
  void load(const Lines& arguments);

  // Runs the application until the condition holds, at most so long.
  bool runUntil(const std::function<bool()>& condition, double seconds = 10);

  // Has requests to end the application counted and refused, where they would end the test program.
  void refuseToEnd();
  [[nodiscard]] int requestsToEnd() const;

  // Presses a button as the user does, and lets the application answer.
  void press(NSButton* button);

  // What is seen of the window, by the names of the outlets, from the top to the bottom and there from the
  // left to the right.
  [[nodiscard]] Lines visibleParts() const;

  [[nodiscard]] std::string title(NSButton* button) const;
  [[nodiscard]] std::string text(NSTextField* field) const;
  [[nodiscard]] NSInteger page() const;
  [[nodiscard]] bool logHas(const std::string& line) const;

  ScratchFolder scratch_;
  platform::testing::FixedProgram program_;
  platform::testing::FixedFolders folders_;
  platform::testing::FixedDesktopAppearance desktopAppearance_;
  platform::testing::FixedLoginItems loginItems_;
  platform::testing::FixedSystemVersion systemVersion_;
  platform::testing::InMemoryAlerts alerts_;
  platform::testing::RecordingApplications applications_;
  platform::testing::InMemoryProcessTable processes_;
  platform::testing::InMemoryProcessControl processControl_;
  platform::testing::InMemoryWindowOrder windowOrder_;
  platform::testing::ManualClock clock_;
  platform::testing::RecordingLog log_;
  InstallerWinController* controller_ = nil;

 private:
  Desktop desktop_;
  ScopedVariable home_;
  ScopedVariable language_{"LANGUAGE", "en"};
  NSAutoreleasePool* pool_;
  std::optional<platform::ScopedServices> services_;
};

}  // namespace kr::testing
