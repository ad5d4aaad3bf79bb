#include "platform/posix/ChildProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <regex>
#include <thread>

#include "platform/posix/FileDescriptor.h"
#include "tests/support/Children.h"
#include "tests/support/Eventually.h"
#include "tests/support/Forked.h"
#include "tests/support/ScratchFolder.h"

namespace kr::posix {
namespace {

using kr::testing::eventually;
using kr::testing::hasNoChildren;
using kr::testing::inChild;
using kr::testing::readFile;
using kr::testing::ScratchFolder;

class ChildProcessTest : public ::testing::Test {
 protected:
  [[nodiscard]] static FileDescriptor created(const std::string& path) {
    return FileDescriptor(::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
  }

  // What the program writes to its standard output.
  std::string outputOf(ChildSetup setup) {
    const FileDescriptor file = created(output);
    setup.output = file.get();
    ChildProcess child;
    const std::error_code error = child.start(setup);
    if (error) return "error: " + error.message();
    EXPECT_TRUE(eventually([&] { return !child.isRunning(); }));
    return readFile(output);
  }

  // A script that may be run.
  std::string script(const std::string& name, const std::string& text) {
    const std::string path = folder.file(name, text);
    ::chmod(path.c_str(), 0755);
    return path;
  }

  static std::error_code startOf(const std::vector<std::string>& words,
                                 const std::optional<std::string>& folder = std::nullopt) {
    ChildProcess child;
    const std::error_code error = child.start({.words = words, .folder = folder});
    EXPECT_FALSE(child.isRunning());
    EXPECT_TRUE(hasNoChildren());
    return error;
  }

  ScratchFolder folder;
  std::string output = folder / "output";
};

TEST_F(ChildProcessTest, GetsItsWordsAsTheyAre) {
  EXPECT_EQ(outputOf({.words = {"/usr/bin/printf", "%s|", "a b", "$(id)", "", "'\"*\xFF"}}),
            "a b|$(id)||'\"*\xFF|");
}

TEST_F(ChildProcessTest, WorksInItsFolder) {
  EXPECT_EQ(outputOf({.words = {"/bin/pwd"}, .folder = folder.path()}), folder.path() + "\n");
  const std::string own = std::filesystem::current_path();
  EXPECT_EQ(outputOf({.words = {"/bin/pwd"}}), own + "\n");
}

TEST_F(ChildProcessTest, HasTheEnvironmentThatItIsGiven) {
  ::setenv("KR_CHILD_TEST", "of the caller", 1);
  EXPECT_EQ(outputOf({.words = {"/usr/bin/env"}, .environment = {{"A=1", "B=2"}}}), "A=1\nB=2\n");
  EXPECT_EQ(outputOf({.words = {"/usr/bin/printenv", "KR_CHILD_TEST"}}), "of the caller\n");
}

TEST_F(ChildProcessTest, HasNothingOpenButItsStandardStreams) {
  const FileDescriptor low(::open("/dev/zero", O_RDONLY));
  const FileDescriptor high(::fcntl(low.get(), F_DUPFD, 700));
  ASSERT_EQ(high.get(), 700);
  // The last one is the listing's own.
  EXPECT_EQ(outputOf({.words = {"/bin/ls", "/proc/self/fd"}}), "0\n1\n2\n3\n");
}

TEST_F(ChildProcessTest, ReadsNothingUnlessItIsGivenSomething) {
  EXPECT_EQ(outputOf({.words = {"/bin/readlink", "/proc/self/fd/0"}}), "/dev/null\n");
  const std::string text = folder.file("input", "to be read");
  const FileDescriptor input(::open(text.c_str(), O_RDONLY | O_CLOEXEC));
  EXPECT_EQ(outputOf({.words = {"/bin/cat"}, .input = input.get()}), "to be read");
}

TEST_F(ChildProcessTest, StartsWhereTheCallerHasClosedItsStreams) {
  const int status = inChild([this] {
    for (const int stream : {0, 1, 2}) ::close(stream);
    // Takes the number of a stream.
    const FileDescriptor file = created(output);
    if (file.get() != 0) return 1;
    ChildProcess child;
    if (child.start({.words = {"/bin/sh", "-c", "readlink /proc/self/fd/0; echo out; echo err >&2"},
                     .output = file.get(),
                     .errors = file.get()})) {
      return 2;
    }
    return eventually([&] { return !child.isRunning(); }) ? 0 : 3;
  });
  EXPECT_EQ(status, 0);
  EXPECT_EQ(readFile(output), "/dev/null\nout\nerr\n");
}

TEST_F(ChildProcessTest, MayExchangeItsStreams) {
  const FileDescriptor out = created(output);
  const FileDescriptor errors = created(folder / "errors");
  const int status = inChild([&] {
    ::dup2(out.get(), 1);
    ::dup2(errors.get(), 2);
    ChildProcess child;
    if (child.start({.words = {"/bin/sh", "-c", "echo out; echo err >&2"}, .output = 2, .errors = 1})) {
      return 1;
    }
    return eventually([&] { return !child.isRunning(); }) ? 0 : 2;
  });
  EXPECT_EQ(status, 0);
  EXPECT_EQ(readFile(output), "err\n");
  EXPECT_EQ(readFile(folder / "errors"), "out\n");
}

TEST_F(ChildProcessTest, HearsSignalsThatTheCallerDoesNot) {
  sigset_t blocked;
  sigset_t before;
  ::sigemptyset(&blocked);
  ::sigaddset(&blocked, SIGTERM);
  ::pthread_sigmask(SIG_BLOCK, &blocked, &before);
  ::signal(SIGPIPE, SIG_IGN);
  const std::string lines = outputOf({.words = {"/bin/grep", "^Sig[BI]", "/proc/self/status"}});
  ::signal(SIGPIPE, SIG_DFL);
  ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
  // The C library keeps signals 32 and 33 to itself.
  EXPECT_TRUE(std::regex_match(lines, std::regex("SigBlk:\t0+\nSigIgn:\t0{7}[01][08]0{7}\n"))) << lines;
}

TEST_F(ChildProcessTest, IsNotThereWhereItsProgramCannotBeStarted) {
  const std::string plain = folder.file("plain", "echo no interpreter");
  EXPECT_EQ(startOf({folder / "missing"}), std::errc::no_such_file_or_directory);
  EXPECT_EQ(startOf({plain}), std::errc::permission_denied);
  EXPECT_EQ(startOf({script("text", "echo no interpreter")}), std::errc::executable_format_error);
  EXPECT_EQ(startOf({script("lost", "#!/no/such/interpreter\n")}), std::errc::no_such_file_or_directory);
  EXPECT_EQ(startOf({folder.folder("folder")}), std::errc::permission_denied);
  EXPECT_EQ(startOf({"/bin/true"}, folder / "missing"), std::errc::no_such_file_or_directory);
  EXPECT_EQ(startOf({""}), std::errc::no_such_file_or_directory);
  EXPECT_EQ(startOf({}), std::errc::no_such_file_or_directory);
  EXPECT_EQ(startOf({"true"}), std::errc::no_such_file_or_directory) << "not looked for in folders";
}

TEST_F(ChildProcessTest, RunsUntilItIsAskedToEnd) {
  ChildProcess child;
  EXPECT_FALSE(child.isRunning());
  ASSERT_FALSE(child.start({.words = {"/bin/sleep", "60"}}));
  EXPECT_TRUE(child.isRunning());
  child.terminate();
  EXPECT_TRUE(eventually([&] { return !child.isRunning(); }));
  EXPECT_TRUE(hasNoChildren());
  child.terminate();
}

TEST_F(ChildProcessTest, EndsWithItsGroupWhereItHasOne) {
  const std::string started = folder / "started";
  for (const bool ownGroup : {true, false}) {
    ChildProcess child;
    const std::string line = "sleep 60 & echo $! > started.new; mv started.new started; wait";
    ASSERT_FALSE(
        child.start({.words = {"/bin/sh", "-c", line}, .folder = folder.path(), .ownGroup = ownGroup}));
    ASSERT_TRUE(eventually([&] { return std::filesystem::exists(started); }));
    const pid_t grandchild = std::stoi(readFile(started));
    std::filesystem::remove(started);
    child.terminate();
    EXPECT_TRUE(eventually([&] { return !child.isRunning(); }));
    const auto isGone = [&] {
      return !std::filesystem::exists("/proc/" + std::to_string(grandchild) + "/exe");
    };
    EXPECT_EQ(eventually(isGone, ownGroup ? 5.0 : 0.3), ownGroup);
    if (!ownGroup) ::kill(grandchild, SIGKILL);
  }
}

TEST_F(ChildProcessTest, ThatIsLeftBehindGoesOnAndIsNoZombieInTheEnd) {
  const std::string done = folder / "done";
  {
    ChildProcess child;
    ASSERT_FALSE(
        child.start({.words = {"/bin/sh", "-c", "sleep 0.3; echo > done"}, .folder = folder.path()}));
  }
  EXPECT_FALSE(hasNoChildren());
  EXPECT_TRUE(eventually([&] { return hasNoChildren(); }));
  EXPECT_TRUE(std::filesystem::exists(done));
}

TEST_F(ChildProcessTest, HasEndedWhereSomebodyElseHasWaitedForIt) {
  ChildProcess child;
  ASSERT_FALSE(child.start({.words = {"/bin/true"}}));
  ASSERT_GT(::wait(nullptr), 0);
  EXPECT_FALSE(child.isRunning());
  child.terminate();
}

TEST_F(ChildProcessTest, IsTheCallersOnceItIsReleased) {
  pid_t pid = 0;
  {
    ChildProcess child;
    ASSERT_FALSE(child.start({.words = {"/bin/sh", "-c", "exit 7"}}));
    pid = child.release();
    EXPECT_FALSE(child.isRunning());
    EXPECT_EQ(child.release(), 0);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(pid, &status, 0), pid);
  EXPECT_EQ(WEXITSTATUS(status), 7);
}

TEST_F(ChildProcessTest, StartsFromManyThreadsAtOnce) {
  std::vector<std::thread> threads;
  std::atomic<int> right = 0;
  for (int number = 0; number < 4; ++number) {
    threads.emplace_back([&, number] {
      for (int round = 0; round < 20; ++round) {
        const std::string path = folder / ("output-" + std::to_string(number));
        const FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC, 0600));
        ChildProcess child;
        if (child.start({.words = {"/bin/ls", "/proc/self/fd"}, .output = file.get()})) return;
        if (!eventually([&] { return !child.isRunning(); })) return;
        if (readFile(path) == "0\n1\n2\n3\n") ++right;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, 80);
}

}  // namespace
}  // namespace kr::posix
