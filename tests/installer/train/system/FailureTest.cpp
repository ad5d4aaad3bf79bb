// Failures on the way: each has its status, and the old product stays.
#include <errno.h>
#include <stdio.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "tests/installer/train/system/TrainTest.h"

namespace kr::testing {
namespace {

class TrainFailure : public TrainTest {
 protected:
  TrainFailure() : source_(product("P.app", "new")) {
    product("to/P.app", "old");
    before_ = fileTree(to_);
  }

  // Runs with these answers to calls of one kind; expects the status, one line, and nothing changed.
  void expectFailure(int kind, const std::function<Answer(const SystemCall&)>& decide, Status status) {
    EXPECT_EQ(runWatched({source_, destination_}, {kind}, decide), status) << errors;
    expectUnchanged(status);
  }
  void expectUnchanged(Status status) {
    EXPECT_TRUE(errors.starts_with("train: " + std::string(train::meaning(status)))) << errors;
    EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
    FileTree after = fileTree(to_);
    // A hidden folder has come and gone.
    after.erase("");
    before_.erase("");
    EXPECT_EQ(after, before_);
  }

  [[nodiscard]] static bool isIn(const std::string& path, const std::string& folder) {
    return path.starts_with(folder + "/");
  }

  const std::string source_;
  FileTree before_;
};

TEST_F(TrainFailure, OfReadingTheSource) {
  expectFailure(
      SYS_read,
      [&](const SystemCall& call) {
        return isIn(call.fileAt(0), source_) ? Answer::fail(EIO) : Answer::proceed();
      },
      Status::sourceUnreadable);
}

TEST_F(TrainFailure, OfASourceThatChanges) {
  bool isChanged = false;
  expectFailure(
      SYS_read,
      [&](const SystemCall& call) {
        if (isIn(call.fileAt(0), source_) && !std::exchange(isChanged, true)) {
          scratch_.file("P.app/Contents/Info.plist", "longer than what was there before");
          scratch_.file("P.app/Contents/MacOS/P", "longer than what was there before");
        }
        return Answer::proceed();
      },
      Status::sourceChanged);
  EXPECT_TRUE(isChanged);
}

TEST_F(TrainFailure, OfASourceWithASpecialFile) {
  ASSERT_EQ(::mkfifo((source_ + "/Contents/fifo").c_str(), 0644), 0);
  EXPECT_EQ(run({source_, destination_}), Status::specialFile);
  expectUnchanged(Status::specialFile);
}

TEST_F(TrainFailure, OfRoom) {
  expectFailure(
      SYS_write,
      [&](const SystemCall& call) {
        return isIn(call.fileAt(0), to_) ? Answer::fail(ENOSPC) : Answer::proceed();
      },
      Status::noRoom);
}

TEST_F(TrainFailure, OfBringingTheCopyToTheDisk) {
  expectFailure(
      SYS_syncfs, [](const SystemCall&) { return Answer::fail(EIO); }, Status::copyFailed);
}

TEST_F(TrainFailure, OfMakingTheCopy) {
  expectFailure(
      SYS_mkdirat, [](const SystemCall&) { return Answer::fail(EROFS); }, Status::copyFailed);
  expectFailure(
      SYS_mkdirat,
      [](const SystemCall& call) { return call.count == 2 ? Answer::fail(EIO) : Answer::proceed(); },
      Status::copyFailed);
}

TEST_F(TrainFailure, OfTheExchange) {
  expectFailure(
      SYS_renameat2, [](const SystemCall&) { return Answer::fail(EPERM); }, Status::exchangeFailed);
}

TEST_F(TrainFailure, OfAnItemOfTheWrapper) {
  scratch_.file("w/item", "new");
  EXPECT_EQ(runWatched({source_, destination_, scratch_ / "w"}, {SYS_renameat2},
                       [](const SystemCall&) { return Answer::fail(EPERM); }),
            Status::wrapperFailed);
  expectUnchanged(Status::wrapperFailed);
}

// A program that a sanitizer watches takes pieces that are bigger than this.
#if !__has_feature(address_sanitizer)
TEST_F(TrainFailure, OfMemory) {
  // Big pieces alone: what little the way back takes is there.
  constexpr std::uint64_t kBig = 200'000;
  std::uint64_t heap = 0;
  EXPECT_EQ(runWatched({source_, destination_}, {SYS_mmap, SYS_brk},
                       [&](const SystemCall& call) {
                         const std::uint64_t wanted = call.arguments[call.number == SYS_mmap ? 1 : 0];
                         if (call.number == SYS_mmap) {
                           return wanted > kBig ? Answer::fail(ENOMEM) : Answer::proceed();
                         }
                         if (heap != 0 && wanted > heap + kBig) {
                           return Answer::failWith(static_cast<std::int64_t>(heap));
                         }
                         heap = std::max(heap, wanted);
                         return Answer::proceed();
                       }),
            Status::noMemory);
  expectUnchanged(Status::noMemory);
}
#endif

TEST_F(TrainFailure, OfWhatEveryProcessNeeds) {
  const auto decide = [](const SystemCall& call) {
    return call.textAt(1) == "/dev/null" ? Answer::fail(EACCES) : Answer::proceed();
  };
  EXPECT_EQ(runWatched({source_, destination_}, {SYS_openat}, decide, [] { ::close(0); }), Status::unsettled);
  expectUnchanged(Status::unsettled);
}

TEST_F(TrainFailure, LeavesWhatHasTakenTheNameMeanwhile) {
  // Something appears where there was nothing.
  const std::string other = to_ + "/Q.app";
  EXPECT_EQ(runWatched({source_, other}, {SYS_syncfs},
                       [&](const SystemCall&) {
                         scratch_.file("to/Q.app/somebody's", "own");
                         return Answer::proceed();
                       }),
            Status::exchangeFailed);
  EXPECT_EQ(readFile(other + "/somebody's"), "own");
  // Something else than what was looked at, where names can be exchanged and where they cannot.
  for (const bool canExchange : {true, false}) {
    const std::string moved = to_ + (canExchange ? "/moved" : "/moved again");
    EXPECT_EQ(runWatched({source_, destination_}, {SYS_syncfs, SYS_renameat2},
                         [&](const SystemCall& call) {
                           if (call.number == SYS_syncfs) {
                             EXPECT_EQ(::rename(destination_.c_str(), moved.c_str()), 0);
                             scratch_.file("to/P.app/somebody's", moved);
                           } else if (!canExchange && call.arguments[4] == RENAME_EXCHANGE) {
                             return Answer::fail(EINVAL);
                           }
                           return Answer::proceed();
                         }),
              Status::exchangeFailed);
    EXPECT_EQ(readFile(destination_ + "/somebody's"), moved);
  }
  EXPECT_EQ(entries(to_), (Lines{"P.app", "Q.app", "moved", "moved again"}));
}

}  // namespace
}  // namespace kr::testing
