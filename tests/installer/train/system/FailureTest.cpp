// Failures on the way: each has its status, and the old product stays.
#include <errno.h>
#include <stdio.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "installer/train/Train.h"
#include "tests/installer/train/system/TrainTest.h"
#include "tests/support/Forked.h"

namespace kr::testing {
namespace {

class TrainFailure : public TrainTest {
 protected:
  TrainFailure() : source_(product("P.app", "new")) {
    product("to/P.app", "old");
    before_ = fileTree(to_);
  }

  // Runs with these answers to calls of one kind; expects the status, one line, and nothing changed.
  void expectFailure(long kind, const std::function<Verdict(const WatchedCall&)>& decide, Status status) {
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
      [&](const WatchedCall& call) {
        return isIn(openPath(call), source_) ? Verdict::fail(EIO) : Verdict::pass();
      },
      Status::sourceUnreadable);
}

TEST_F(TrainFailure, OfASourceThatChanges) {
  bool isChanged = false;
  expectFailure(
      SYS_read,
      [&](const WatchedCall& call) {
        if (isIn(openPath(call), source_) && !std::exchange(isChanged, true)) {
          scratch_.file("P.app/Contents/Info.plist", "longer than what was there before");
          scratch_.file("P.app/Contents/MacOS/P", "longer than what was there before");
        }
        return Verdict::pass();
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
      [&](const WatchedCall& call) {
        return isIn(openPath(call), to_) ? Verdict::fail(ENOSPC) : Verdict::pass();
      },
      Status::noRoom);
}

TEST_F(TrainFailure, OfBringingTheCopyToTheDisk) {
  expectFailure(
      SYS_syncfs, [](const WatchedCall&) { return Verdict::fail(EIO); }, Status::copyFailed);
}

TEST_F(TrainFailure, OfMakingTheCopy) {
  expectFailure(
      SYS_mkdirat, [](const WatchedCall&) { return Verdict::fail(EROFS); }, Status::copyFailed);
  expectFailure(
      SYS_mkdirat,
      [](const WatchedCall& call) { return call.index == 2 ? Verdict::fail(EIO) : Verdict::pass(); },
      Status::copyFailed);
}

TEST_F(TrainFailure, OfTheExchange) {
  expectFailure(
      SYS_renameat2, [](const WatchedCall&) { return Verdict::fail(EPERM); }, Status::exchangeFailed);
}

TEST_F(TrainFailure, OfAnItemOfTheWrapper) {
  scratch_.file("w/item", "new");
  EXPECT_EQ(runWatched({source_, destination_, scratch_ / "w"}, {SYS_renameat2},
                       [](const WatchedCall&) { return Verdict::fail(EPERM); }),
            Status::wrapperFailed);
  expectUnchanged(Status::wrapperFailed);
}

// A sanitizer takes much more memory than there is to be.
#if !__has_feature(address_sanitizer)
TEST_F(TrainFailure, OfMemory) {
  const int status = inChild([&] {
    // Enough for the way there and back, not for the contents of a file.
    long pages = 0;
    if (std::FILE* sizes = std::fopen("/proc/self/statm", "r")) {
      if (std::fscanf(sizes, "%ld", &pages) != 1) return 1;
      std::fclose(sizes);
    }
    const rlim_t room = static_cast<rlim_t>(pages * ::sysconf(_SC_PAGESIZE)) + (64UL << 10);
    const rlimit limit{room, room};
    if (::setrlimit(RLIMIT_AS, &limit) != 0) return 2;
    // What this process has left over.
    for (const void* volatile piece = &limit; piece != nullptr;) piece = std::malloc(100'000);
    std::vector<std::string> notes;
    const auto refused = train::install({source_, destination_, {}}, notes);
    return refused ? static_cast<int>(refused->status) : 0;
  });
  EXPECT_EQ(WEXITSTATUS(status), static_cast<int>(Status::noMemory)) << status;
  FileTree after = fileTree(to_);
  after.erase("");
  before_.erase("");
  EXPECT_EQ(after, before_);
}
#endif

TEST_F(TrainFailure, OfWhatEveryProcessNeeds) {
  watchesStart = true;
  const auto decide = [](const WatchedCall& call) {
    return call.path() == "/dev/null" ? Verdict::fail(EACCES) : Verdict::pass();
  };
  EXPECT_EQ(runWatched({source_, destination_}, {SYS_openat}, decide, [] { ::close(0); }), Status::unsettled);
  expectUnchanged(Status::unsettled);
}

// Something else than what was looked at comes back from the exchange, and cannot get its name back. Where
// nothing can be moved aside either, it stays in the hidden folder, whatever else is run.
TEST_F(TrainFailure, LosesNothingOfOthersThatItCannotGiveBack) {
  for (const bool canMoveAside : {false, true}) {
    const std::string moved = to_ + (canMoveAside ? "/moved again" : "/moved");
    int exchanges = 0;
    bool isExchanged = false;
    EXPECT_EQ(runWatched({source_, destination_}, {SYS_syncfs, SYS_renameat2, SYS_mkdirat},
                         [&](const WatchedCall& call) {
                           if (call.number == SYS_syncfs) {
                             EXPECT_EQ(::rename(destination_.c_str(), moved.c_str()), 0);
                             scratch_.file("to/P.app/somebody's", moved);
                             isExchanged = true;
                           } else if (call.number == SYS_mkdirat) {
                             return isExchanged && !canMoveAside ? Verdict::fail(ENOSPC) : Verdict::pass();
                           } else if (call.arguments[4] == RENAME_EXCHANGE && ++exchanges == 2) {
                             return Verdict::fail(EIO);
                           }
                           return Verdict::pass();
                         }),
              Status::exchangeFailed);
    EXPECT_EQ(exchanges, 2);
    // The name is taken at the next run, so that nothing is put back.
    EXPECT_EQ(run({source_, destination_}), Status::installed) << errors;
    std::string found;
    for (const auto& [path, line] : fileTree(to_)) {
      if (path.starts_with("/.velmora-replace-") && path.ends_with("/somebody's")) found = path;
    }
    ASSERT_NE(found, "") << ::testing::PrintToString(entries(to_));
    EXPECT_EQ(readFile(to_ + found), moved);
    removeAll(to_ + found.substr(0, found.find('/', 1)));
  }
}

// The same when the tool is killed before it has seen what came back.
TEST_F(TrainFailure, LosesNothingOfOthersWhenKilledAfterTheExchange) {
  bool isExchanged = false;
  EXPECT_EQ(runWatched({source_, destination_}, {SYS_syncfs, SYS_renameat2, SYS_newfstatat},
                       [&](const WatchedCall& call) {
                         if (call.number == SYS_syncfs) {
                           EXPECT_EQ(::rename(destination_.c_str(), (to_ + "/moved").c_str()), 0);
                           scratch_.file("to/P.app/somebody's", "own");
                         } else if (isExchanged) {
                           return Verdict::kill();
                         }
                         isExchanged = call.number == SYS_renameat2 && call.arguments[4] == RENAME_EXCHANGE;
                         return Verdict::pass();
                       }),
            std::nullopt);
  EXPECT_EQ(run({source_, destination_}), Status::installed) << errors;
  bool isFound = false;
  for (const auto& [path, line] : fileTree(to_)) isFound |= path.ends_with("/somebody's");
  EXPECT_TRUE(isFound) << ::testing::PrintToString(entries(to_));
}

TEST_F(TrainFailure, LeavesWhatHasTakenTheNameMeanwhile) {
  // Something appears where there was nothing.
  const std::string other = to_ + "/Q.app";
  EXPECT_EQ(runWatched({source_, other}, {SYS_syncfs},
                       [&](const WatchedCall&) {
                         scratch_.file("to/Q.app/somebody's", "own");
                         return Verdict::pass();
                       }),
            Status::exchangeFailed);
  EXPECT_EQ(readFile(other + "/somebody's"), "own");
  // Something else than what was looked at, where names can be exchanged and where they cannot.
  for (const bool canExchange : {true, false}) {
    const std::string moved = to_ + (canExchange ? "/moved" : "/moved again");
    EXPECT_EQ(runWatched({source_, destination_}, {SYS_syncfs, SYS_renameat2},
                         [&](const WatchedCall& call) {
                           if (call.number == SYS_syncfs) {
                             EXPECT_EQ(::rename(destination_.c_str(), moved.c_str()), 0);
                             scratch_.file("to/P.app/somebody's", moved);
                           } else if (!canExchange && call.arguments[4] == RENAME_EXCHANGE) {
                             return Verdict::fail(EINVAL);
                           }
                           return Verdict::pass();
                         }),
              Status::exchangeFailed);
    EXPECT_EQ(readFile(destination_ + "/somebody's"), moved);
  }
  EXPECT_EQ(entries(to_), (Lines{"P.app", "Q.app", "moved", "moved again"}));
}

}  // namespace
}  // namespace kr::testing
