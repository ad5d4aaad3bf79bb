#include "platform/ProcessControl.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/SystemServices.h"
#include "platform/linux/ProcFS.h"
#include "tests/support/Eventually.h"
#include "tests/support/TestApplication.h"

namespace kr::platform {
namespace {

using kr::testing::Child;
using kr::testing::eventually;
using kr::testing::ScratchFolder;
using kr::testing::TestApplication;

class ProcessControlTest : public ::testing::Test {
 protected:
  ScratchFolder folder;
  ProcessControl& control = systemProcessControl();
};

TEST_F(ProcessControlTest, IsAvailable) {
  EXPECT_TRUE(control.isAvailable());
}

TEST_F(ProcessControlTest, APoliteRequestEndsAnApplication) {
  TestApplication application(folder, "A.app");
  const std::unique_ptr<RunningApplication> running = control.running(application.pid());
  ASSERT_TRUE(running);
  EXPECT_FALSE(running->isTerminated());
  EXPECT_TRUE(running->terminate());
  EXPECT_TRUE(eventually([&] { return running->isTerminated(); }));
  // It was not reaped yet, but nobody is there to take a request.
  EXPECT_FALSE(running->terminate());
  EXPECT_FALSE(running->forceTerminate());
  const std::optional<int> status = application.child().wait(5.0);
  ASSERT_TRUE(status);
  EXPECT_TRUE(WIFSIGNALED(*status) && WTERMSIG(*status) == SIGTERM);
  EXPECT_TRUE(running->isTerminated());
  EXPECT_FALSE(running->terminate());
}

TEST_F(ProcessControlTest, AStubbornApplicationEndsByForceOnly) {
  TestApplication application(folder, "A.app", {}, {"stubborn"});
  const std::unique_ptr<RunningApplication> running = control.running(application.pid());
  ASSERT_TRUE(running);
  EXPECT_TRUE(running->terminate());
  EXPECT_FALSE(eventually([&] { return running->isTerminated(); }, 0.2));
  EXPECT_TRUE(running->forceTerminate());
  EXPECT_TRUE(eventually([&] { return running->isTerminated(); }));
}

TEST_F(ProcessControlTest, AStoppedApplicationEndsByForce) {
  TestApplication application(folder, "A.app");
  application.child().signal(SIGSTOP);
  ASSERT_TRUE(eventually([&] { return procfs::status(application.pid())->state == 'T'; }));
  const std::unique_ptr<RunningApplication> running = control.running(application.pid());
  ASSERT_TRUE(running);
  EXPECT_TRUE(running->terminate());
  EXPECT_FALSE(eventually([&] { return running->isTerminated(); }, 0.2));
  EXPECT_TRUE(running->forceTerminate());
  EXPECT_TRUE(eventually([&] { return running->isTerminated(); }));
}

TEST_F(ProcessControlTest, ThereIsNobodyUnderTheIDOfAProcessThatHasEnded) {
  TestApplication application(folder, "A.app");
  const pid_t pid = application.pid();
  application.child().signal(SIGKILL);
  EXPECT_TRUE(eventually([&] { return control.running(pid) == nullptr; })) << "as a zombie";
  ASSERT_TRUE(application.child().wait(5.0));
  EXPECT_EQ(control.running(pid), nullptr);
  EXPECT_EQ(control.running(0), nullptr);
  EXPECT_EQ(control.running(-1), nullptr);
}

// Runs the code in a child that has given root's rights up; answers its exit status.
template <class Code>
int asNobody(Code code) {
  const pid_t pid = ::fork();
  if (pid == 0) {
    constexpr uid_t kNobody = 65534;
    if (::setgid(kNobody) != 0 || ::setuid(kNobody) != 0) ::_exit(100);
    ::_exit(code());
  }
  int status = 0;
  ::waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 101;
}

// An ordinary user has root's processes to try it on, root has a child that is somebody else. What the code
// answers is an exit status, as it may run in another process.
template <class Code>
int onAProcessOfAnotherUser(pid_t own, Code code) {
  if (::geteuid() == 0) return asNobody([&] { return code(own); });
  return code(1);
}

TEST_F(ProcessControlTest, AProcessThatMayNotBeSignalledIsNotTakenForGone) {
  TestApplication application(folder, "A.app");
  const int answers = onAProcessOfAnotherUser(application.pid(), [&](pid_t pid) {
    const std::unique_ptr<RunningApplication> running = control.running(pid);
    if (!running) return 10;
    return (running->terminate() ? 1 : 0) + (running->forceTerminate() ? 2 : 0) +
           (running->isTerminated() ? 4 : 0);
  });
  EXPECT_EQ(answers, 1 + 2);
  EXPECT_FALSE(eventually([&] { return control.running(application.pid()) == nullptr; }, 0.1));
}

}  // namespace
}  // namespace kr::platform
