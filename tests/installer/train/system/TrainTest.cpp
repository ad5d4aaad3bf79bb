#include "tests/installer/train/system/TrainTest.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>

#include "platform/posix/Files.h"
#include "tests/support/Forked.h"
#include "tests/support/SystemCalls.h"

namespace kr::testing {
namespace {

std::optional<Status> statusOf(int waited) {
  if (!WIFEXITED(waited)) return std::nullopt;
  return static_cast<Status>(WEXITSTATUS(waited));
}

}  // namespace

TrainTest::TrainTest() : to_(scratch_.folder("to")), destination_(to_ + "/P.app") {}

std::string TrainTest::product(const std::string& name, const std::string& version) const {
  const std::string root = scratch_.folder(name);
  scratch_.file(name + "/Contents/Info.plist", version + " information");
  scratch_.file(name + "/Contents/MacOS/P", version + " program");
  scratch_.file(name + "/Contents/Resources/read-only", version);
  scratch_.file(name + "/Contents/Resources/big", version + std::string(100'000, 'x'));
  EXPECT_EQ(::chmod((root + "/Contents/MacOS/P").c_str(), 0755), 0);
  EXPECT_EQ(::chmod((root + "/Contents/Resources/read-only").c_str(), 0444), 0);
  EXPECT_EQ(::link((root + "/Contents/MacOS/P").c_str(), (root + "/Contents/MacOS/second").c_str()), 0);
  EXPECT_EQ(::symlink("Contents/MacOS/P", (root + "/link").c_str()), 0);
  EXPECT_EQ(::chmod((root + "/Contents/Resources").c_str(), 0555), 0);
  setTimes(root, 1'000'000'000, 1);
  return root;
}

std::optional<Status> TrainTest::run(const Lines& words, const std::function<void()>& prepare) {
  return runWatched(words, {}, {}, prepare);
}

std::optional<Status> TrainTest::runWatched(const Lines& words, const std::vector<long>& kinds,
                                            const std::function<Verdict(const WatchedCall&)>& decide,
                                            const std::function<void()>& prepare) {
  const ScratchFolder output;
  const std::string file = output.file("errors", "");
  Lines all{KR_TRAIN};
  all.insert(all.end(), words.begin(), words.end());
  std::vector<char*> pointers;
  for (std::string& word : all) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  const auto become = [&] {
    ::dup2(::open(file.c_str(), O_WRONLY | O_CLOEXEC), STDERR_FILENO);
    if (prepare) prepare();
    // A sanitizer does not look for leaks in a process that is traced, and takes that for an error.
    if (!kinds.empty()) ::setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
    ::execv(pointers[0], pointers.data());
    return 99;
  };
  int waited = -1;
  if (kinds.empty()) {
    waited = inChild(become);
  } else {
    // The tool's first calls are those of the program's start, which are not its own.
    const long first = watchesStart ? SYS_execve : SYS_chdir;
    bool isTool = false;
    std::size_t count = 0;
    waited = trace(become, [&](const WatchedCall& call) {
               if (call.number == first) isTool = true;
               if (!isTool || std::find(kinds.begin(), kinds.end(), call.number) == kinds.end()) {
                 return Verdict::pass();
               }
               WatchedCall counted = call;
               counted.index = ++count;
               return decide(counted);
             }).status;
  }
  errors = readFile(file);
  return statusOf(waited);
}

std::string TrainTest::openPath(const WatchedCall& call) {
  const auto descriptor = static_cast<int>(call.arguments[0]);
  const std::string link = "/proc/" + std::to_string(call.thread) + "/fd/" + std::to_string(descriptor);
  std::array<char, PATH_MAX> path{};
  const ssize_t size = ::readlink(link.c_str(), path.data(), path.size());
  return {path.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0))};
}

std::optional<Status> TrainTest::runWithoutDisk(const Lines& words) {
  return runWatched(words, {SYS_syncfs, SYS_fsync}, passWithoutDisk);
}

Verdict TrainTest::passWithoutDisk(const WatchedCall& call) {
  return waitsForDisk(call.number) ? Verdict::answer(0) : Verdict::pass();
}

FileTree TrainTest::installed(const std::string& source) {
  const ScratchFolder folder;
  const std::string copy = folder / "P.app";
  EXPECT_EQ(runWithoutDisk({source, copy}), Status::installed) << errors;
  return fileTree(copy);
}

Lines TrainTest::entries(const std::string& folder) {
  Lines names = files::entries(folder).value_or(Lines{"(unreadable)"});
  std::sort(names.begin(), names.end());
  return names;
}

void TrainTest::expectRefused(const Lines& words, Status status) {
  const FileTree before = fileTree(scratch_.path());
  EXPECT_EQ(run(words), status) << ::testing::PrintToString(words);
  EXPECT_TRUE(errors.starts_with("train: " + std::string(train::meaning(status)))) << errors;
  EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
  EXPECT_EQ(fileTree(scratch_.path()), before) << ::testing::PrintToString(words);
}

}  // namespace kr::testing
