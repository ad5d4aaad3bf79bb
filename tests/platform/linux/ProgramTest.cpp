#include "platform/Program.h"

#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/SystemServices.h"
#include "tests/support/Child.h"
#include "tests/support/Desktop.h"
#include "tests/support/Eventually.h"
#include "tests/support/ScratchFolder.h"

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

// In a copy of this program, which removes its file.
TEST(RunningProgram, KnowsItsBundleOnceItsFileIsGone) {
  constexpr const char* kBundle = "KR_BUNDLE_OF_THE_COPY";
  if (const char* bundle = std::getenv(kBundle)) {
    EXPECT_EQ(systemProgram().bundlePath(), bundle);
    ASSERT_TRUE(std::filesystem::remove(std::string(bundle) + "/Contents/MacOS/Copy"));
    EXPECT_EQ(systemProgram().bundlePath(), bundle);
    return;
  }
  const testing::ScratchFolder folder;
  const std::string copy = folder.folder("Copy.app/Contents/MacOS") + "/Copy";
  std::filesystem::copy_file("/proc/self/exe", copy);
  const testing::ScopedVariable variable(kBundle, folder / "Copy.app");
  testing::Child child({copy, "--gtest_filter=RunningProgram.KnowsItsBundleOnceItsFileIsGone"});
  EXPECT_EQ(child.wait(20.0), 0);
}

}  // namespace
}  // namespace kr::platform
