#include "installer/AuthorizedExecute.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <vector>

#include "platform/Services.h"
#include "platform/testing/InMemoryAuthorization.h"
#include "platform/testing/RecordingLog.h"

namespace kr {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* kTool = "/tool 100% train";

class AuthorizedExecuteTest : public ::testing::Test {
 protected:
  AuthorizedExecuteTest() {
    platform::Services set = platform::services();
    set.log = &log_;
    scope_.emplace(set);
  }

  std::int32_t execute(const std::vector<const char*>& arguments = {"/source", "/destination", nullptr}) {
    return AuthorizedExecute(*authorization_.create(""), kTool, arguments.data());
  }

  static void expectNoChildIsLeft() { EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1); }

  Lines calls_;
  platform::testing::InMemoryAuthorization authorization_{calls_};
  platform::testing::RecordingLog log_;

 private:
  std::optional<platform::ScopedServices> scope_;
};

TEST_F(AuthorizedExecuteTest, AToolThatEndsWithStatus0HasSucceeded) {
  authorization_.tool = [] { return 0; };
  EXPECT_EQ(execute(), 0);
  EXPECT_EQ(log_.lines(), Lines{});
  EXPECT_EQ(calls_.at(1), "execute /tool 100% train [/source] [/destination]");
  expectNoChildIsLeft();
}

TEST_F(AuthorizedExecuteTest, TheToolIsWaitedForHoweverLongItTakes) {
  authorization_.tool = [] {
    ::usleep(300'000);
    return 3;
  };
  EXPECT_EQ(execute(), -1);
  expectNoChildIsLeft();
}

TEST_F(AuthorizedExecuteTest, AnyOtherStatusIsAFailure) {
  for (const int status : {1, 2, 126, 127, 255}) {
    authorization_.tool = [status] { return status; };
    EXPECT_EQ(execute(), -1);
  }
  EXPECT_EQ(log_.lines(), Lines(5, "WEXITSTATUS"));
}

TEST_F(AuthorizedExecuteTest, AToolThatIsKilledHasNotEndedNormally) {
  authorization_.tool = [] { return ::raise(SIGKILL); };
  EXPECT_EQ(execute(), -1);
  EXPECT_EQ(log_.lines(), Lines{"!WIFEXITED"});
}

TEST_F(AuthorizedExecuteTest, AToolThatCannotBeStartedAnswersTheSystemsCode) {
  authorization_.tool = [] { return 0; };
  for (const std::int32_t code : {-60031, -60005, -60006, 1}) {
    authorization_.executeStatus = code;
    EXPECT_EQ(execute(), code);
  }
  EXPECT_EQ(log_.lines(), Lines(4, "AuthorizationExecuteWithPrivileges failed (/tool 100% train)"));
}

TEST_F(AuthorizedExecuteTest, WithoutAChildToWaitForItIsTakenAsSuccessful) {
  EXPECT_EQ(execute(), 0);
  EXPECT_EQ(log_.lines(), Lines{"no pid"});
}

// Whatever the handler does, an interrupted wait is not one without a child.
TEST_F(AuthorizedExecuteTest, ASignalDoesNotEndTheWaiting) {
  struct sigaction action {};
  action.sa_handler = [](int) {};
  ::sigaction(SIGUSR1, &action, nullptr);
  authorization_.tool = [] {
    for (int signal = 0; signal < 10; ++signal) {
      ::kill(::getppid(), SIGUSR1);
      ::usleep(20'000);
    }
    return 1;
  };
  EXPECT_EQ(execute(), -1);
  EXPECT_EQ(log_.lines(), Lines{"WEXITSTATUS"});
}

}  // namespace
}  // namespace kr
