// Somebody who may write above the destination, or owns the source, works against the tool while it runs.
#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <stdio.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <set>

#include "platform/posix/Files.h"
#include "tests/installer/train/system/TrainTest.h"

namespace kr::testing {
namespace {

const std::vector<long> kSteps{SYS_openat,     SYS_mkdirat,    SYS_flock,     SYS_fchmod, SYS_fchown,
                               SYS_fchownat,   SYS_write,      SYS_symlinkat, SYS_linkat, SYS_utimensat,
                               SYS_unlinkat,   SYS_renameat2,  SYS_syncfs,    SYS_fsync,  SYS_read,
                               SYS_getdents64, SYS_newfstatat, SYS_statx};

void swapNames(const std::string& one, const std::string& other) {
  ASSERT_EQ(::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE), 0);
}

// way/apps holds the product; elsewhere/apps has one of the same name, which is somebody else's, and `link`
// leads there.
class TrainUnderAttack : public TrainTest {
 protected:
  TrainUnderAttack()
      : one_(product("one.app", "one")),
        other_(product("other.app", "other")),
        oneInstalled_(installed(one_)),
        otherInstalled_(installed(other_)) {
    scratch_.folder("way/apps");
    product("elsewhere/apps/P.app", "foreign");
    scratch_.file("elsewhere/apps/item", "foreign");
    scratch_.file("wrapper/item", "new");
    EXPECT_EQ(::symlink("elsewhere", (scratch_ / "link").c_str()), 0);
    elsewhere_ = fileTree(scratch_ / "elsewhere");
    EXPECT_EQ(runWithoutDisk({one_, target_, scratch_ / "wrapper"}), Status::installed) << errors;
  }

  // Where the folder of the products is at the moment.
  [[nodiscard]] std::string apps() const {
    struct stat status {};
    const bool isSwapped = ::lstat((scratch_ / "way").c_str(), &status) == 0 && S_ISLNK(status.st_mode);
    return scratch_ / (isSwapped ? "link/apps" : "way/apps");
  }

  void expectOneOrOther() const {
    const FileTree tree = fileTree(apps() + "/P.app");
    EXPECT_TRUE(tree == oneInstalled_ || tree == otherInstalled_) << ::testing::PrintToString(tree);
  }

  // Puts a link to the secret in place of the item of the source, at each step in turn.
  void expectNotFollowed(const std::string& item, const std::string& secret) {
    const std::string link = scratch_ / "bait";
    ASSERT_EQ(::symlink(secret.c_str(), link.c_str()), 0);
    std::size_t reached = 0;
    std::set<std::optional<Status>> statuses;
    for (std::size_t step = 1; step == 1 || reached >= step - 1; ++step) {
      reached = 0;
      statuses.insert(runWatched({other_, target_}, kSteps, [&](const WatchedCall& call) {
        reached = call.index;
        if (call.index == step) swapNames(item, link);
        return passWithoutDisk(call);
      }));
      if (reached >= step) swapNames(item, link);
      for (const auto& [path, line] : fileTree(target_)) {
        if (path.ends_with("Info.plist") && line.find(" -> ") == std::string::npos) {
          EXPECT_NE(readFile(target_ + path), kSecret) << "step " << step;
        }
      }
      if (HasFailure()) return;
    }
    EXPECT_TRUE(statuses.contains(Status::sourceChanged));
  }

  static constexpr const char* kSecret = "nobody's business";
  const std::string one_;
  const std::string other_;
  const FileTree oneInstalled_;
  const FileTree otherInstalled_;
  const std::string target_ = scratch_ / "way/apps/P.app";
  FileTree elsewhere_;
};

TEST_F(TrainUnderAttack, ALinkPutInTheWayAtAnyStepLeadsNowhere) {
  std::size_t reached = 0;
  std::set<std::optional<Status>> statuses;
  for (std::size_t step = 1; reached >= step - 1; ++step) {
    reached = 0;
    const std::string& source = step % 2 == 0 ? one_ : other_;
    statuses.insert(runWatched({source, target_, scratch_ / "wrapper"}, kSteps, [&](const WatchedCall& call) {
      reached = call.index;
      if (call.index == step) swapNames(scratch_ / "way", scratch_ / "link");
      return passWithoutDisk(call);
    }));
    ASSERT_EQ(fileTree(scratch_ / (reached >= step ? "way/" : "elsewhere")), elsewhere_) << "step " << step;
    expectOneOrOther();
    EXPECT_EQ(entries(apps()), (Lines{"P.app", "item"})) << "step " << step;
    if (reached >= step) swapNames(scratch_ / "way", scratch_ / "link");
    if (HasFailure()) return;
  }
  EXPECT_EQ(statuses, (std::set<std::optional<Status>>{Status::installed, Status::destinationRefused}));
}

TEST_F(TrainUnderAttack, ALinkThatComesAndGoesAllTheTimeLeadsNowhere) {
  const std::string way = scratch_ / "way";
  const std::string link = scratch_ / "link";
  const pid_t attacker = ::fork();
  if (attacker == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    while (::renameat2(AT_FDCWD, way.c_str(), AT_FDCWD, link.c_str(), RENAME_EXCHANGE) == 0) ::sched_yield();
    ::_exit(1);
  }
  int installations = 0;
  int refusals = 0;
  for (int round = 0; round < 200; ++round) {
    const auto status = runWithoutDisk({round % 2 == 0 ? other_ : one_, target_, scratch_ / "wrapper"});
    installations += status == Status::installed ? 1 : 0;
    refusals += status == Status::destinationRefused ? 1 : 0;
  }
  EXPECT_EQ(::waitpid(attacker, nullptr, WNOHANG), 0) << "the attack has ended";
  ::kill(attacker, SIGKILL);
  ::waitpid(attacker, nullptr, 0);
  EXPECT_EQ(installations + refusals, 200);
  EXPECT_GT(installations, 0);
  EXPECT_GT(refusals, 0);
  EXPECT_EQ(fileTree(scratch_ / "elsewhere"), elsewhere_);
  expectOneOrOther();
  EXPECT_EQ(entries(apps()), (Lines{"P.app", "item"}));
}

TEST_F(TrainUnderAttack, ALinkInPlaceOfTheDestinationIsNotFollowed) {
  const std::string secret = scratch_ / "elsewhere/apps/P.app";
  std::size_t reached = 0;
  for (std::size_t step = 1; reached >= step - 1; ++step) {
    reached = 0;
    const std::string moved = scratch_ / "way/moved";
    runWatched({other_, target_}, kSteps, [&](const WatchedCall& call) {
      reached = call.index;
      if (call.index == step && ::rename(target_.c_str(), moved.c_str()) == 0) {
        EXPECT_EQ(::symlink(secret.c_str(), target_.c_str()), 0);
      }
      return passWithoutDisk(call);
    });
    ASSERT_EQ(fileTree(scratch_ / "elsewhere"), elsewhere_) << "step " << step;
    if (files::itemExists(moved)) {
      // The tool never takes the link away, but for one that came after all was done.
      ::unlink(target_.c_str());
      ASSERT_EQ(::rename(moved.c_str(), target_.c_str()), 0) << "step " << step;
    }
    expectOneOrOther();
    if (HasFailure()) return;
  }
}

TEST_F(TrainUnderAttack, ALinkInPlaceOfAFileOfTheSourceIsNotFollowed) {
  expectNotFollowed(other_ + "/Contents/Info.plist", scratch_.file("secret/Info.plist", kSecret));
}

TEST_F(TrainUnderAttack, ALinkInPlaceOfAFolderOfTheSourceIsNotFollowed) {
  scratch_.file("secret/Info.plist", kSecret);
  expectNotFollowed(other_ + "/Contents", scratch_ / "secret");
}

TEST_F(TrainUnderAttack, AnotherFolderInPlaceOfTheHiddenOneIsNotEmptied) {
  const std::string other = scratch_.folder("way/apps/other");
  scratch_.file("way/apps/other/item/file", "stays");
  std::size_t reached = 0;
  for (std::size_t step = 1; step == 1 || reached >= step - 1; ++step) {
    reached = 0;
    std::string hidden;
    runWatched({step % 2 == 0 ? one_ : other_, target_}, kSteps, [&](const WatchedCall& call) {
      reached = call.index;
      if (call.index != step) return passWithoutDisk(call);
      for (const std::string& name : entries(scratch_ / "way/apps")) {
        if (!name.starts_with(".velmora-replace-")) continue;
        hidden = scratch_ / "way/apps/" + name;
        swapNames(hidden, other);
      }
      return passWithoutDisk(call);
    });
    if (!hidden.empty()) {
      ASSERT_EQ(readFile(hidden + "/item/file"), "stays") << "step " << step;
      if (files::itemExists(other)) {
        swapNames(hidden, other);
        ASSERT_EQ(std::system(("chmod -R u+rwX '" + hidden + "' && rm -r '" + hidden + "'").c_str()), 0);
      } else {
        ASSERT_EQ(::rename(hidden.c_str(), other.c_str()), 0);
      }
    }
    expectOneOrOther();
    if (HasFailure()) return;
  }
}

}  // namespace
}  // namespace kr::testing
