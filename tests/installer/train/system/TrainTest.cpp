#include "tests/installer/train/system/TrainTest.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

#include "platform/posix/Files.h"
#include "tests/support/Forked.h"

namespace kr::testing {
namespace {

std::optional<Status> statusOf(int waited) {
  if (!WIFEXITED(waited)) return std::nullopt;
  return static_cast<Status>(WEXITSTATUS(waited));
}

Lines withProgram(const Lines& words) {
  Lines all{KR_TRAIN};
  all.insert(all.end(), words.begin(), words.end());
  return all;
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

std::optional<Status> TrainTest::runWatched(const Lines& words, const std::vector<int>& kinds,
                                            const std::function<Answer(const SystemCall&)>& decide,
                                            const std::function<void()>& prepare) {
  ScratchFolder output;
  const std::string file = output.file("errors", "");
  const auto start = [&] {
    ::dup2(::open(file.c_str(), O_WRONLY), STDERR_FILENO);
    if (prepare) prepare();
  };
  std::vector<std::string> all = withProgram(words);
  int waited = -1;
  if (kinds.empty()) {
    std::vector<char*> pointers;
    for (std::string& word : all) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    waited = inChild([&] {
      start();
      ::execv(pointers[0], pointers.data());
      return 99;
    });
  } else {
    waited = watched(all, kinds, decide, start);
  }
  errors = readFile(file);
  return statusOf(waited);
}

std::optional<Status> TrainTest::runWithoutDisk(const Lines& words) {
  return runWatched(words, {SYS_syncfs, SYS_fsync}, proceedWithoutDisk);
}

Answer TrainTest::proceedWithoutDisk(const SystemCall& call) {
  const bool isDisk = call.number == SYS_syncfs || call.number == SYS_fsync;
  return isDisk ? Answer::failWith(0) : Answer::proceed();
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
