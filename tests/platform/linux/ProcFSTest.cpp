#include "platform/linux/ProcFS.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "tests/support/Eventually.h"
#include "tests/support/TestApplication.h"

namespace kr::platform::procfs {
namespace {

using kr::testing::eventually;
using kr::testing::ScratchFolder;
using kr::testing::TestApplication;

std::string line(const std::string& name, const std::string& rest = "") {
  return "12 (" + name + ") S 1 12 12 0 -1 4194304 104 0 0 0 250 7 0 0 20 0 1 0 176749" + rest +
         " 3133440 381\n";
}

TEST(ParseStatus, ReadsStateTimesAndStart) {
  const std::optional<Status> status = parseStatus(line("cat"));
  ASSERT_TRUE(status);
  EXPECT_EQ(status->state, 'S');
  EXPECT_EQ(status->parent, 1);
  EXPECT_EQ(status->userTicks, 250U);
  EXPECT_EQ(status->startTicks, 176749U);
  EXPECT_FALSE(status->hasEnded());
}

TEST(ParseStatus, TheNameMayHoldAnything) {
  for (const char* name : {"a b", "a) S 1 (b", ")", "(", "a\nb", "", ") Z 1 2 3"}) {
    const std::optional<Status> status = parseStatus(line(name));
    ASSERT_TRUE(status) << name;
    EXPECT_EQ(status->state, 'S') << name;
    EXPECT_EQ(status->startTicks, 176749U) << name;
  }
}

TEST(ParseStatus, AZombieHasEnded) {
  EXPECT_TRUE((Status{.state = 'Z'}.hasEnded()));
  EXPECT_TRUE((Status{.state = 'X'}.hasEnded()));
  EXPECT_FALSE((Status{.state = 'T'}.hasEnded()));
  EXPECT_FALSE((Status{.state = 'D'}.hasEnded()));
}

TEST(ParseStatus, WhatIsNoStatusLineIsNone) {
  EXPECT_FALSE(parseStatus(""));
  EXPECT_FALSE(parseStatus("12 cat S 1"));
  EXPECT_FALSE(parseStatus("12 (cat) S 1 2 3"));
  EXPECT_FALSE(parseStatus("12 (cat) S 1 12 12 0 -1 4194304 104 0 0 0 x 7 0 0 20 0 1 0 176749 1"));
  EXPECT_FALSE(parseStatus(line("cat", "x")));
}

TEST(ProcFS, KnowsTheRunningProgram) {
  EXPECT_EQ(executable(::getpid()), std::filesystem::read_symlink("/proc/self/exe").string());
  const std::vector<pid_t> all = processIDs();
  EXPECT_NE(std::find(all.begin(), all.end(), ::getpid()), all.end());
  const std::optional<SerialNumber> serial = serialNumber(::getpid());
  ASSERT_TRUE(serial);
  EXPECT_EQ(processID(*serial), ::getpid());
  EXPECT_EQ(runningProcessID(*serial), ::getpid());
}

TEST(ProcFS, NoProcessIsNone) {
  for (const pid_t pid : {0, -1, 4194305}) {
    EXPECT_FALSE(status(pid)) << pid;
    EXPECT_FALSE(executable(pid)) << pid;
    EXPECT_FALSE(serialNumber(pid)) << pid;
  }
}

TEST(ProcFS, AnotherProcessWithTheSameIDIsNotTheOne) {
  SerialNumber serial = serialNumber(::getpid()).value();
  serial.high -= 1;
  EXPECT_FALSE(runningProcessID(serial));
}

TEST(ProcFS, ReadsProcessesWithOddNames) {
  const ScratchFolder folder;
  for (const char* name : {"a b) Z 0", ") (", "x\ny"}) {
    TestApplication application(folder, "Odd.app", {}, {"comm", name});
    const std::optional<Status> found = status(application.pid());
    ASSERT_TRUE(found) << name;
    EXPECT_FALSE(found->hasEnded()) << name;
    EXPECT_GE(found->startTicks, status(::getpid())->startTicks);
  }
}

TEST(ProcFS, AProcessThatWasNotReapedHasEnded) {
  const ScratchFolder folder;
  TestApplication application(folder, "A.app");
  const std::optional<SerialNumber> serial = serialNumber(application.pid());
  ASSERT_TRUE(serial);
  application.child().signal(SIGKILL);
  EXPECT_TRUE(eventually([&] { return !runningProcessID(*serial); }));
  const std::optional<Status> zombie = status(application.pid());
  ASSERT_TRUE(zombie);
  EXPECT_EQ(zombie->state, 'Z');
}

TEST(ProcFS, TheExecutableFollowsAMoveAndKeepsItsPathWhenItIsDeleted) {
  const ScratchFolder folder;
  TestApplication application(folder, "A.app");
  EXPECT_EQ(executable(application.pid()), folder / "A.app/A");
  std::filesystem::rename(folder / "A.app", folder / "B.app");
  EXPECT_EQ(executable(application.pid()), folder / "B.app/A");
  std::filesystem::remove_all(folder / "B.app");
  EXPECT_EQ(executable(application.pid()), folder / "B.app/A");
}

TEST(ProcFS, AFileThatIsReallyCalledDeletedKeepsItsName) {
  const ScratchFolder folder;
  const std::string path = kr::testing::makeBundle(folder, "A.app") + " (deleted)";
  std::filesystem::rename(folder / "A.app/A", path);
  const TestApplication application(path);
  EXPECT_EQ(executable(application.pid()), path);
}

TEST(ProcFS, TheSystemWasStartedBeforeNow) {
  const std::optional<double> boot = bootTime();
  ASSERT_TRUE(boot);
  EXPECT_GT(*boot, 1e9);
  EXPECT_LT(*boot, static_cast<double>(::time(nullptr)) + 1);
  EXPECT_GT(ticksPerSecond(), 0);
}

}  // namespace
}  // namespace kr::platform::procfs
