#include "platform/Program.h"

#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/SystemServices.h"
#include "tests/support/Eventually.h"

namespace kr::platform {
namespace {

TEST(RunningProgram, KnowsWhetherItIsTraced) {
  EXPECT_FALSE(systemProgram().isDebugged());
  const pid_t child = ::fork();
  if (child == 0) {
    ::_exit(testing::eventually([] { return systemProgram().isDebugged(); }, 10.0) ? 0 : 1);
  }
  ASSERT_EQ(::ptrace(PTRACE_SEIZE, child, 0, 0), 0);
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace kr::platform
