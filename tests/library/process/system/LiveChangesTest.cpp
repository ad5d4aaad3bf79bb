// What a program that is built on the library is told of the applications of a real desktop.
#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <optional>
#include <thread>

#include "tests/support/Desktop.h"
#include "tests/support/Eventually.h"
#include "tests/support/ReportingProgram.h"
#include "tests/support/TestApplication.h"
#include "tests/support/WakeUps.h"
#include "tests/support/WindowView.h"

namespace kr {
namespace {

using testing::Desktop;
using testing::eventually;
using testing::ReportingProgram;
using testing::ScratchFolder;
using testing::TestApplication;
using testing::threadCount;
using testing::voluntarySwitches;

class LiveChanges : public ::testing::Test {
 protected:
  // Ends the application as if it had crashed; answers once it is gone.
  static void end(TestApplication& application) {
    application.child().signal(SIGKILL);
    ASSERT_TRUE(application.child().wait(5.0));
  }

  // An application of another toolkit: no bundle, only a window.
  TestApplication withoutBundle(const std::string& title) {
    const std::string program = folder / ("plain-" + title);
    std::filesystem::copy_file(KR_TEST_APPLICATION, program);
    return TestApplication(program, {"window", title});
  }

  ScratchFolder folder;
  Desktop desktop{{.windowManager = true}};
};

TEST_F(LiveChanges, ALaunchIsToldByItsFirstWindowAndAnEndByTheKernel) {
  ReportingProgram monitor(KR_PROCESS_MONITOR);
  TestApplication one(folder, "One.app", {}, {"window", "A"});
  ASSERT_TRUE(monitor.writes("started 1 "));
  end(one);
  ASSERT_TRUE(monitor.writes("ended 2 "));
}

TEST_F(LiveChanges, ApplicationsOfOtherToolkitsCountToo) {
  ReportingProgram monitor(KR_PROCESS_MONITOR);
  TestApplication one = withoutBundle("A");
  ASSERT_TRUE(monitor.writes("started 1 "));
  end(one);
  ASSERT_TRUE(monitor.writes("ended 2 "));
}

TEST_F(LiveChanges, AnotherFrontApplicationIsToldAndAnotherWindowOfTheSameIsNot) {
  TestApplication one(folder, "One.app", {}, {"window", "A"});
  TestApplication two(folder, "Two.app", {}, {"window", "B", "window", "C"});
  ReportingProgram monitor(KR_PROCESS_MONITOR);
  EXPECT_TRUE(monitor.isSilent(0.3));
  const auto activate = [](const std::string& title) {
    testing::Child tool({"xdotool", "search", "--name", "^" + title + "$", "windowactivate", "--sync"});
    const auto status = tool.wait(10.0);
    ASSERT_TRUE(status && *status == 0) << title;
  };
  activate("B");
  EXPECT_TRUE(monitor.isSilent(0.3));
  activate("A");
  EXPECT_TRUE(monitor.writes("front 0 "));
  EXPECT_TRUE(monitor.isSilent(0.3));
  activate("C");
  EXPECT_TRUE(monitor.writes("front 0 "));
}

TEST_F(LiveChanges, ThatNoApplicationIsInFrontForAWhileIsNoChange) {
  TestApplication one(folder, "One.app", {}, {"window", "A"});
  testing::WindowView view;
  ASSERT_TRUE(eventually([&] { return view.active() == "A"; }));
  ReportingProgram monitor(KR_PROCESS_MONITOR);
  testing::Child away({"xdotool", "search", "--name", "^A$", "windowminimize"});
  ASSERT_TRUE(away.wait(10.0));
  ASSERT_TRUE(eventually([&] { return view.active().empty(); })) << view.active();
  testing::Child back({"xdotool", "search", "--name", "^A$", "windowactivate"});
  ASSERT_TRUE(back.wait(10.0));
  ASSERT_TRUE(eventually([&] { return view.active() == "A"; }));
  EXPECT_TRUE(monitor.isSilent(0.3));
}

TEST_F(LiveChanges, AFurtherWindowIsNoLaunchAndAClosedOneNoEnd) {
  ReportingProgram monitor(KR_PROCESS_MONITOR);
  TestApplication one(folder, "One.app", {}, {"window", "A", "window", "B"});
  ASSERT_TRUE(monitor.writes("started 1 "));
  ASSERT_TRUE(eventually([&] { return !monitor.writes("started", 0.1); }));
  testing::Child tool({"xdotool", "search", "--name", "^A$", "windowunmap"});
  ASSERT_TRUE(tool.wait(10.0));
  EXPECT_FALSE(monitor.writes("ended", 0.3));
  end(one);
  EXPECT_TRUE(monitor.writes("ended 2 "));
}

TEST_F(LiveChanges, TheEndOfAnApplicationThatRanBeforeAndHasNoWindowIsTold) {
  TestApplication agent(folder, "Agent.app");
  ReportingProgram monitor(KR_PROCESS_MONITOR);
  const std::vector<std::string> none;
  EXPECT_TRUE(monitor.isSilent(0.3));
  end(agent);
  ASSERT_TRUE(monitor.writes("ended 1 "));
}

TEST_F(LiveChanges, AnEndCleansTheCacheUp) {
  TestApplication one(folder, "One.app");
  TestApplication two(folder, "Two.app");
  ReportingProgram monitor(KR_PROCESS_MONITOR);
  end(one);
  ASSERT_TRUE(monitor.writes("ended 1 "));
  const std::string first = monitor.lines().back();
  end(two);
  ASSERT_TRUE(monitor.writes("ended 2 "));
  const auto cached = [](const std::string& line) { return std::stoi(line.substr(line.rfind(' ') + 1)); };
  EXPECT_EQ(cached(monitor.lines().back()), cached(first) - 1);
}

TEST_F(LiveChanges, AZombieHasEnded) {
  TestApplication one(folder, "One.app");
  ReportingProgram monitor(KR_PROCESS_MONITOR);
  one.child().signal(SIGKILL);
  // Not reaped.
  EXPECT_TRUE(monitor.writes("ended 1 "));
}

TEST_F(LiveChanges, NothingWakesTheProgramWhileTheDesktopIsQuiet) {
  TestApplication one(folder, "One.app", {}, {"window", "A"});
  TestApplication two = withoutBundle("B");
  ReportingProgram monitor(KR_PROCESS_MONITOR);
  EXPECT_TRUE(monitor.isSilent(0.5));
  EXPECT_EQ(threadCount(monitor.pid()), 1U);
  const long before = voluntarySwitches(monitor.pid());
  std::this_thread::sleep_for(std::chrono::seconds(3));
  EXPECT_EQ(voluntarySwitches(monitor.pid()), before);
  // It is awake all the same.
  end(one);
  EXPECT_TRUE(monitor.writes("ended 1 "));
  EXPECT_GT(voluntarySwitches(monitor.pid()), before);
}

TEST_F(LiveChanges, NothingWakesAnApplicationOfTheToolkitEither) {
  ReportingProgram monitor(KR_PROCESS_MONITOR, {"-application", "YES"});
  TestApplication one(folder, "One.app", {}, {"window", "A"});
  ASSERT_TRUE(monitor.writes("started 1 "));
  // The toolkit has things of its own to do for a while after the start; whatever asks again and again never
  // stops.
  EXPECT_TRUE(eventually(
      [&] {
        const long before = voluntarySwitches(monitor.pid());
        std::this_thread::sleep_for(std::chrono::seconds(3));
        return voluntarySwitches(monitor.pid()) == before;
      },
      20.0));
  end(one);
  EXPECT_TRUE(monitor.writes("ended 2 "));
}

TEST_F(LiveChanges, AsManyDescriptorsAreOpenAfterwardsAsBefore) {
  ReportingProgram monitor(KR_PROCESS_MONITOR);
  const std::size_t before = monitor.descriptors();
  {
    TestApplication one(folder, "One.app", {}, {"window", "A"});
    ASSERT_TRUE(monitor.writes("started 1 "));
    EXPECT_EQ(monitor.descriptors(), before + 1);
  }
  ASSERT_TRUE(monitor.writes("ended 2 "));
  EXPECT_TRUE(eventually([&] { return monitor.descriptors() == before; })) << monitor.descriptors();
}

TEST_F(LiveChanges, WithoutItsServerEndsAreStillTold) {
  TestApplication agent(folder, "Agent.app");
  ReportingProgram monitor(KR_PROCESS_MONITOR);
  desktop.stopDisplay();
  EXPECT_FALSE(monitor.writes("ended", 0.3));
  EXPECT_TRUE(monitor.isRunning());
  const long before = voluntarySwitches(monitor.pid());
  std::this_thread::sleep_for(std::chrono::seconds(2));
  EXPECT_EQ(voluntarySwitches(monitor.pid()), before);
  end(agent);
  EXPECT_TRUE(monitor.writes("ended 1 "));
}

TEST(LiveChangesWithoutADisplay, EndsAreTold) {
  const Desktop none({.display = false});
  const ScratchFolder folder;
  TestApplication agent(folder, "Agent.app");
  ReportingProgram monitor(KR_PROCESS_MONITOR);
  agent.child().signal(SIGKILL);
  EXPECT_TRUE(monitor.writes("ended 1 "));
}

}  // namespace
}  // namespace kr
