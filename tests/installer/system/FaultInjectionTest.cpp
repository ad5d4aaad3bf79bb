// That faults strike where they should: what shows nothing here shows nothing in the tests that rely on it.
#include "tests/support/FaultInjection.h"

#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <system_error>
#include <thread>

#include "tests/support/ScratchFolder.h"
#include "tests/support/SharedLines.h"

namespace kr::testing {
namespace {

int answer(const FaultRun& run) {
  return WIFEXITED(run.traced.status) ? WEXITSTATUS(run.traced.status) : -1;
}

int openAndLook() {
  const int file = ::open("/dev/null", O_RDONLY);
  if (file < 0) return errno;
  struct stat status {};
  if (::fstat(file, &status) != 0) return errno;
  return ::close(file) == 0 ? 0 : errno;
}

TEST(FaultInjection, WithoutAFaultCountsTheCallsAndChangesNothing) {
  const FaultRun run = runWithFault([] { return openAndLook() + 7; }, 0, Fault::error(EIO));
  EXPECT_EQ(answer(run), 7);
  EXPECT_EQ(run.traced.calls, 3U);
  EXPECT_EQ(run.countedCalls, 3U);
  EXPECT_EQ(run.traced.threads, 1U);
  EXPECT_EQ(run.hits, 0U);
}

TEST(FaultInjection, EachCallFailsInItsTurn) {
  const char* const calls[] = {"openat /dev/null", "newfstatat ", "close"};
  for (std::size_t at = 1; at <= 3; ++at) {
    const FaultRun run = runWithFault(openAndLook, at, Fault::error(EMFILE));
    EXPECT_EQ(run.hits, 1U);
    EXPECT_EQ(run.call, calls[at - 1]);
    EXPECT_EQ(answer(run), EMFILE);
    EXPECT_EQ(run.traced.calls, at) << "the work has ended there";
  }
  EXPECT_EQ(runWithFault(openAndLook, 4, Fault::error(EMFILE)).hits, 0U);
}

TEST(FaultInjection, AFailedCloseHasClosed) {
  const FaultRun run = runWithFault(
      [] {
        const int file = ::open("/dev/null", O_RDONLY);
        const bool failed = ::close(file) != 0 && errno == EIO;
        return failed && ::fcntl(file, F_GETFD) < 0 && errno == EBADF ? 0 : 1;
      },
      2, Fault::error(EIO));
  EXPECT_EQ(run.call, "close");
  EXPECT_EQ(answer(run), 0);
}

TEST(FaultInjection, ATransferThatIsCutShortMovesHalf) {
  const ScratchFolder scratch;
  const std::string path = scratch.file("file", "0123456789");
  const auto read = [&] {
    const int file = ::open(path.c_str(), O_RDWR);
    char bytes[10] = {};
    const ssize_t first = ::read(file, bytes, sizeof bytes);
    return static_cast<int>(first * 10 + ::write(file, bytes, 4));
  };
  EXPECT_EQ(answer(runWithFault(read, 0, Fault::cutShort())), 104);
  EXPECT_EQ(answer(runWithFault(read, 1, Fault::cutShort())), 54);
  EXPECT_EQ(answer(runWithFault(read, 2, Fault::cutShort())), 102);
  EXPECT_EQ(runWithFault(read, 3, Fault::cutShort()).hits, 0U);
}

TEST(FaultInjection, AKilledProcessMakesNoFurtherCall) {
  SharedLines lines;
  const ScratchFolder scratch;
  const FaultRun run = runWithFault(
      [&] {
        lines.line("before");
        ::mkdir((scratch / "folder").c_str(), 0755);
        lines.line("after");
        return 0;
      },
      1, Fault::kill());
  ASSERT_TRUE(WIFSIGNALED(run.traced.status));
  EXPECT_EQ(WTERMSIG(run.traced.status), SIGKILL);
  EXPECT_EQ(lines.lines(), std::vector<std::string>{"before"});
  EXPECT_NE(::access((scratch / "folder").c_str(), F_OK), 0);
}

int openInAThread() {
  int answer = 0;
  try {
    std::thread([&] { answer = openAndLook(); }).join();
  } catch (const std::system_error& error) {
    return error.code().value();
  }
  return answer;
}

TEST(FaultInjection, StrikesInEveryThread) {
  const FaultRun sound = runWithFault(openInAThread, 0, Fault::error(EIO));
  ASSERT_EQ(answer(sound), 0);
  ASSERT_EQ(sound.traced.threads, 2U);
  const FaultRun run = runWithFault(openInAThread, sound.traced.calls, Fault::error(EIO));
  EXPECT_EQ(run.call, "close");
  EXPECT_EQ(answer(run), EIO);
}

TEST(FaultInjection, CanDoWithoutFurtherThreads) {
  const FaultRun run = runWithFault(openInAThread, 0, Fault::error(EIO), Threads::one);
  EXPECT_EQ(answer(run), EAGAIN);
  EXPECT_EQ(run.traced.threads, 1U);
}

TEST(FaultInjection, NothingWaitsForTheDisk) {
  const auto wait = [] { return ::fsync(-1) == 0 ? 0 : errno; };
  EXPECT_EQ(answer(runWithFault(wait, 0, Fault::error(EIO))), 0);
  EXPECT_EQ(answer(runWithFault(wait, 1, Fault::error(EIO))), EIO);
}

}  // namespace
}  // namespace kr::testing
