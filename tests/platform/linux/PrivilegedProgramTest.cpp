#include "platform/linux/PrivilegedProgram.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>
#include <vector>

#include "platform/Services.h"
#include "platform/linux/ChildSignalGuard.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/ScratchFolder.h"

namespace kr::platform {
namespace {

// Scripts in place of pkexec that answer as it does, and of the tool.
class PrivilegedProgram : public ::testing::Test {
 protected:
  PrivilegedProgram() {
    Services set = services();
    set.log = &log_;
    scope_.emplace(set);
    ::signal(SIGCHLD, SIG_DFL);
  }

  std::string script(const std::string& name, const std::string& body) {
    const std::string path = scratch_.file(name, "#!/bin/sh\n" + body + "\n");
    ::chmod(path.c_str(), 0755);
    return path;
  }
  // What pkexec does once the user may.
  std::string allowing() { return script("pkexec", "shift\nexec \"$@\""); }

  AuthorizationStatus run(const std::string& elevator, const std::string& toolBody,
                          const std::vector<const char*>& arguments = {nullptr}) {
    tool_ = script("train", toolBody);
    return runPrivileged(elevator, tool_.c_str(), arguments.data());
  }

  static int endOfChild() {
    int status = -1;
    EXPECT_GT(::wait(&status), 0);
    return status;
  }
  static void expectNoChildIsLeft() {
    EXPECT_EQ(::wait(nullptr), -1);
    EXPECT_EQ(errno, ECHILD);
  }

  kr::testing::ScratchFolder scratch_;
  testing::RecordingLog log_;
  std::string tool_;

 private:
  std::optional<ScopedServices> scope_;
};

TEST_F(PrivilegedProgram, TheProgramsOwnStatusIsLeftForTheCaller) {
  const std::string elevator = allowing();
  for (const int status : {0, 1, 126, 127, 255}) {
    EXPECT_EQ(run(elevator, "exit " + std::to_string(status)), kAuthorized);
    const int end = endOfChild();
    EXPECT_TRUE(WIFEXITED(end));
    EXPECT_EQ(WEXITSTATUS(end), status);
  }
}

TEST_F(PrivilegedProgram, TheSignalThatKilledTheProgramIsLeftForTheCaller) {
  EXPECT_EQ(run(allowing(), "kill -KILL $$"), kAuthorized);
  const int end = endOfChild();
  EXPECT_TRUE(WIFSIGNALED(end));
}

TEST_F(PrivilegedProgram, AnElevatorThatDoesNotStartTheProgramSaysWhy) {
  EXPECT_EQ(run(script("pkexec", "exit 126"), ""), kAuthorizationCanceled);
  EXPECT_EQ(run(script("pkexec", "exit 127"), ""), kAuthorizationDenied);
  EXPECT_EQ(run(script("pkexec", "exit 1"), ""), kAuthorizationToolNotStarted);
  EXPECT_EQ(run(script("pkexec", "kill -TERM $$"), ""), kAuthorizationToolNotStarted);
  expectNoChildIsLeft();
}

TEST_F(PrivilegedProgram, AMissingElevatorIsNamed) {
  EXPECT_EQ(run(scratch_ / "pkexec", ""), kAuthorizationToolNotStarted);
  EXPECT_EQ(log_.lines(), std::vector<std::string>{"could not start " + scratch_ / "pkexec" +
                                                   ": No such file or directory"});
  expectNoChildIsLeft();
}

TEST_F(PrivilegedProgram, TheElevatorNeverAsksOnATerminalAndTheArgumentsAreKeptApart) {
  const std::string elevator =
      script("pkexec",
             "for word; do printf '[%s]' \"$word\"; done > \"${0%/*}/words\"; env > \"${0%/*}/environment\"");
  EXPECT_EQ(run(elevator, "", {"/two  words", "--", "\xFF\n*", nullptr}), kAuthorizationToolNotStarted);
  EXPECT_EQ(kr::testing::readFile(scratch_ / "words"),
            "[--disable-internal-agent][" + tool_ + "][/two  words][--][\xFF\n*]");
  EXPECT_EQ(kr::testing::readFile(scratch_ / "environment").find("HOME="), std::string::npos)
      << "nothing of the caller's";
}

TEST_F(PrivilegedProgram, TheProgramHasNoInputAndStandardSignals) {
  ::signal(SIGTERM, SIG_IGN);
  EXPECT_EQ(run(allowing(),
                "read line; test $? = 1 || exit 2\n"
                "grep -q 'SigIgn:.*[0-3]...$' /proc/self/status || exit 3"),
            kAuthorized);
  EXPECT_EQ(WEXITSTATUS(endOfChild()), 0);
}

// Foundation's own handler does so, for every child that there is.
void reapAll(int) {
  while (::waitpid(-1, nullptr, WNOHANG) > 0) {
  }
}

TEST_F(PrivilegedProgram, AHandlerThatReapsEveryChildDoesNotTakeTheStatus) {
  ::signal(SIGCHLD, reapAll);
  for (int round = 0; round < 5; ++round) {
    const ChildSignalGuard guard;
    EXPECT_EQ(run(allowing(), "exit 7"), kAuthorized);
    EXPECT_EQ(WEXITSTATUS(endOfChild()), 7);
  }
}

TEST_F(PrivilegedProgram, ACallerThatWasStartedWithEndsOfChildrenIgnoredGetsTheStatusToo) {
  ::signal(SIGCHLD, SIG_IGN);
  const ChildSignalGuard guard;
  EXPECT_EQ(run(allowing(), "exit 7"), kAuthorized);
  EXPECT_EQ(WEXITSTATUS(endOfChild()), 7);
  EXPECT_EQ(run(script("pkexec", "exit 126"), ""), kAuthorizationCanceled);
}

TEST_F(PrivilegedProgram, WithoutTheGuardAnEndThatTheSystemHasTakenCountsAsTheProgramsOwn) {
  ::signal(SIGCHLD, SIG_IGN);
  EXPECT_EQ(run(script("pkexec", "exit 126"), ""), kAuthorized);
  expectNoChildIsLeft();
}

TEST_F(PrivilegedProgram, AnEndedChildOfAnotherThreadIsNotTakenForIt) {
  pid_t other = 0;
  std::thread([&] {
    other = ::fork();
    if (other == 0) ::_exit(0);
    // The children of a thread that ends become those of another one: this one has to stay.
    siginfo_t end{};
    ::waitid(P_PID, static_cast<id_t>(other), &end, WEXITED | WNOWAIT);
    std::thread([&] {
      EXPECT_EQ(run(allowing(), "exit 7"), kAuthorized);
      EXPECT_EQ(WEXITSTATUS(endOfChild()), 7);
    }).join();
  }).join();
  EXPECT_EQ(::waitpid(other, nullptr, 0), other);
}

int gHeard = 0;
void hear(int) {
  ++gHeard;
}

TEST(ChildSignalGuard, AHandlerHearsAfterwardsOfChildrenThatEndedMeanwhile) {
  ::signal(SIGCHLD, hear);
  {
    const ChildSignalGuard guard;
    const pid_t child = ::fork();
    if (child == 0) ::_exit(0);
    ::waitpid(child, nullptr, 0);
    EXPECT_EQ(gHeard, 0);
  }
  EXPECT_EQ(gHeard, 1);
}

TEST(ChildSignalGuard, AHandlerThatCameMeanwhileStays) {
  ::signal(SIGCHLD, SIG_IGN);
  {
    const ChildSignalGuard guard;
    ::signal(SIGCHLD, hear);
  }
  EXPECT_EQ(::signal(SIGCHLD, SIG_DFL), hear);
}

TEST(ChildSignalGuard, WhatWasIgnoredIsIgnoredAgain) {
  ::signal(SIGCHLD, SIG_IGN);
  { const ChildSignalGuard guard; }
  EXPECT_EQ(::signal(SIGCHLD, SIG_DFL), SIG_IGN);
}

}  // namespace
}  // namespace kr::platform
