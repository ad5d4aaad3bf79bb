// Killed or failing at any step, the tool leaves the old product or the new one, each whole; the next run
// clears up.
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "platform/posix/Files.h"
#include "tests/installer/train/system/TrainTest.h"

namespace kr::testing {
namespace {

// The calls by which the disk changes, or that lead to them.
const std::vector<long> kSteps{SYS_openat,    SYS_mkdirat,  SYS_flock,     SYS_fchmod,    SYS_fchown,
                               SYS_fchownat,  SYS_write,    SYS_ftruncate, SYS_symlinkat, SYS_linkat,
                               SYS_utimensat, SYS_unlinkat, SYS_renameat2, SYS_renameat,  SYS_syncfs,
                               SYS_fsync,     SYS_read,     SYS_getdents64};

class TrainStopped : public TrainTest {
 protected:
  TrainStopped()
      : oldSource_(product("old.app", "old")),
        newSource_(product("new.app", "new")),
        old_(installed(oldSource_)),
        new_(installed(newSource_)) {}

  void putOldInPlace() {
    files_ = entries(to_);
    for (const std::string& name : files_) {
      ASSERT_EQ(
          std::system(
              ("chmod -R u+rwX '" + to_ + "/" + name + "' && rm -r '" + to_ + "/" + name + "'").c_str()),
          0);
    }
    ASSERT_EQ(runWithoutDisk({oldSource_, destination_}), Status::installed) << errors;
  }

  void expectOldOrNew(const std::string& what) {
    const FileTree tree = fileTree(destination_);
    EXPECT_TRUE(tree == old_ || tree == new_) << what << ": " << ::testing::PrintToString(tree);
  }

  // The next run installs, and leaves the product alone in its folder.
  void expectClearedByNextRun(const std::string& what) {
    ASSERT_EQ(runWithoutDisk({newSource_, destination_}), Status::installed) << what << ": " << errors;
    EXPECT_EQ(errors, "") << what;
    EXPECT_EQ(entries(to_), Lines{"P.app"}) << what;
    EXPECT_EQ(fileTree(destination_), new_) << what;
  }

  // What is not written into the copy is a line for people, or a sanitizer's business.
  [[nodiscard]] bool mayFail(const WatchedCall& call) const {
    return call.number == SYS_write && !openPath(call).starts_with(to_ + "/");
  }

  // Runs with every first, second, third ... call of the steps answered by `answer`, and looks at what is
  // left after each run. Calls of `without` fail in every case.
  void stopAtEachStep(Verdict answer, bool withoutExchange,
                      const std::function<void(const std::string&)>& look) {
    std::size_t reached = 0;
    for (std::size_t step = 1; step == 1 || reached >= step - 1; ++step) {
      putOldInPlace();
      reached = 0;
      std::string last;
      status_ = runWatched({newSource_, destination_}, kSteps, [&](const WatchedCall& call) {
        reached = call.index;
        const bool isHarmless = answer.kind == Verdict::Kind::answer && mayFail(call);
        if (call.index == step && !isHarmless) {
          last = "call " + std::to_string(call.number) + ", step " + std::to_string(step);
          return answer;
        }
        const bool isExchange = call.number == SYS_renameat2 && call.arguments[4] == RENAME_EXCHANGE;
        return withoutExchange && isExchange ? Verdict::fail(EINVAL) : passWithoutDisk(call);
      });
      if (reached < step) break;
      look(last);
      if (HasFatalFailure() || HasFailure()) return;
      ++stops_;
    }
    EXPECT_EQ(status_, Status::installed) << errors;
    EXPECT_GT(stops_, 50) << "the steps are not those of a copy";
  }

  const std::string oldSource_;
  const std::string newSource_;
  const FileTree old_;
  const FileTree new_;
  std::optional<Status> status_;
  Lines files_;
  int stops_ = 0;
};

TEST_F(TrainStopped, KilledAtEachStepItLeavesAWholeProduct) {
  stopAtEachStep(Verdict::kill(), false, [&](const std::string& what) {
    EXPECT_FALSE(status_) << what;
    expectOldOrNew(what);
    expectClearedByNextRun(what);
  });
}

TEST_F(TrainStopped, KilledAtEachStepWhereNamesCannotBeExchangedItLosesNothing) {
  bool wasMissing = false;
  stopAtEachStep(Verdict::kill(), true, [&](const std::string& what) {
    if (files::itemExists(destination_)) {
      expectOldOrNew(what);
    } else {
      // Between the two renames. A run that fails later still puts the old one back.
      wasMissing = true;
      EXPECT_EQ(run({scratch_ / "missing", destination_}), Status::sourceRefused);
      EXPECT_EQ(runWatched({newSource_, destination_}, {SYS_syncfs},
                           [](const WatchedCall&) { return Verdict::fail(EIO); }),
                Status::copyFailed);
      EXPECT_EQ(fileTree(destination_), old_) << what;
    }
    expectClearedByNextRun(what);
  });
  EXPECT_TRUE(wasMissing);
}

TEST_F(TrainStopped, FailingAtEachStepItLeavesAWholeProductAndNothingElse) {
  stopAtEachStep(Verdict::fail(EIO), false, [&](const std::string& what) {
    ASSERT_TRUE(status_) << what;
    const FileTree tree = fileTree(destination_);
    if (status_ == Status::installed) {
      EXPECT_EQ(tree, new_) << what;
    } else {
      EXPECT_EQ(tree, old_) << what << " " << errors;
    }
    expectClearedByNextRun(what);
  });
}

TEST_F(TrainStopped, FailingAtEachStepWhereNamesCannotBeExchangedItLosesNothing) {
  stopAtEachStep(Verdict::fail(EIO), true, [&](const std::string& what) {
    ASSERT_TRUE(status_) << what;
    const FileTree tree = fileTree(destination_);
    EXPECT_EQ(tree, status_ == Status::installed ? new_ : old_) << what << " " << errors;
    expectClearedByNextRun(what);
  });
}

TEST_F(TrainStopped, KilledAtAnyMomentItLeavesAWholeProduct) {
  putOldInPlace();
  for (int round = 0; round < 30; ++round) {
    const std::string& source = round % 2 == 0 ? newSource_ : oldSource_;
    const pid_t pid = ::fork();
    if (pid == 0) {
      ::execl(KR_TRAIN, KR_TRAIN, source.c_str(), destination_.c_str(), nullptr);
      ::_exit(99);
    }
    std::this_thread::sleep_for(std::chrono::microseconds(round * 300));
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
    expectOldOrNew("round " + std::to_string(round));
  }
  expectClearedByNextRun("at last");
}

TEST_F(TrainStopped, LeavesTheHiddenFoldersOfOthers) {
  const std::string name = ".velmora-replace-0123456789abcde";
  // Holds what the tool never puts there.
  scratch_.file("to/" + name + "0/something else", "stays");
  scratch_.file("to/" + name + "0/item/file", "stays");
  scratch_.file("to/" + name + "g/item/file", "stays");  // is no such name
  scratch_.file("to/" + name + "/item/file", "stays");
  scratch_.folder("target/item");
  ASSERT_EQ(::symlink((scratch_ / "target").c_str(), (to_ + "/" + name + "1").c_str()), 0);
  const Lines before = entries(to_);
  ASSERT_EQ(run({newSource_, destination_}), Status::installed) << errors;
  Lines after = entries(to_);
  EXPECT_EQ(std::erase(after, "P.app"), 1U);
  EXPECT_EQ(after, before);
  EXPECT_EQ(entries(scratch_ / "target"), Lines{"item"});
  EXPECT_EQ(readFile(to_ + "/" + name + "0/item/file"), "stays");
}

TEST_F(TrainStopped, UsesNoHiddenFolderOfAnotherUser) {
  const std::string leftover = scratch_.folder("to/.velmora-replace-0123456789abcdef/item");
  const std::string folder = scratch_.folder("to/other");
  if (::chown(folder.c_str(), 1234, 1234) != 0) GTEST_SKIP() << "only root can give a folder away";
  ASSERT_EQ(::chown((to_ + "/.velmora-replace-0123456789abcdef").c_str(), 1234, 1234), 0);
  // Put in place of the tool's own when that has just been made.
  bool isMade = false;
  const auto status =
      runWatched({newSource_, destination_}, {SYS_mkdirat, SYS_openat}, [&](const WatchedCall& call) {
        if (std::exchange(isMade, call.number == SYS_mkdirat) && call.number == SYS_openat) {
          EXPECT_EQ(::renameat2(AT_FDCWD, (to_ + "/" + call.path()).c_str(), AT_FDCWD, folder.c_str(),
                                RENAME_EXCHANGE),
                    0);
        }
        return Verdict::pass();
      });
  EXPECT_EQ(status, Status::copyFailed) << errors;
  EXPECT_FALSE(files::itemExists(destination_));
  EXPECT_TRUE(files::itemExists(leftover));
}

TEST_F(TrainStopped, LeavesTheHiddenFolderOfARunThatIsUnderWay) {
  putOldInPlace();
  bool isDone = false;
  const auto status = runWatched({newSource_, destination_}, {SYS_syncfs}, [&](const WatchedCall&) {
    isDone = true;
    EXPECT_EQ(run({newSource_, to_ + "/Q.app"}), Status::installed) << errors;
    return Verdict::pass();
  });
  EXPECT_EQ(status, Status::installed) << errors;
  EXPECT_TRUE(isDone);
  EXPECT_EQ(entries(to_), (Lines{"P.app", "Q.app"}));
}

}  // namespace
}  // namespace kr::testing
