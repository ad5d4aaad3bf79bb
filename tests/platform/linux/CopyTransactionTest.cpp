// A copy that does not come to its end leaves nothing, or what the next one clears away.
#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <thread>

#include "platform/linux/copy/Contents.h"
#include "platform/linux/copy/CopyTree.h"
#include "platform/linux/copy/Staging.h"
#include "platform/posix/Files.h"
#include "tests/support/FileTree.h"
#include "tests/support/Forked.h"
#include "tests/support/ScratchFolder.h"

namespace kr::platform::copy {
namespace {

using kr::testing::FileTree;
using kr::testing::fileTree;
using kr::testing::inChild;
using Lines = std::vector<std::string>;

const std::string kLeftover = std::string(kStagingPrefix) + "0123456789abcdef";

class CopyTransaction : public ::testing::Test {
 protected:
  CopyTransaction() {
    for (int number = 0; number < 200; ++number) {
      scratch_.file("from/P.app/folder" + std::to_string(number % 7) + "/file" + std::to_string(number),
                    std::string(static_cast<std::size_t>(number * 97), 'x'));
    }
    EXPECT_EQ(::symlink("x", (source_ + "/link").c_str()), 0);
    EXPECT_EQ(::link((source_ + "/folder0/file0").c_str(), (source_ + "/second").c_str()), 0);
    EXPECT_EQ(::truncate(scratch_.file("from/P.app/sparse").c_str(), 1 << 20), 0);
    EXPECT_EQ(::chmod((source_ + "/folder1").c_str(), 0555), 0);
    files::makeFolders(scratch_ / "to");
    source_tree_ = fileTree(source_);
  }

  [[nodiscard]] Lines entries() const {
    Lines names = files::entries(scratch_ / "to").value_or(Lines{"(unreadable)"});
    std::sort(names.begin(), names.end());
    return names;
  }

  // After a copy was killed: the product is whole or absent, and the next copy leaves nothing else.
  void expectWholeOrAbsent() {
    if (files::itemExists(destination_)) {
      EXPECT_EQ(fileTree(destination_), source_tree_);
      const auto failure = copyTree(source_, scratch_ / "to/Q.app");
      ASSERT_FALSE(failure) << failure->text();
      EXPECT_EQ(entries(), (Lines{"P.app", "Q.app"}));
    } else {
      const auto failure = copyTree(source_, destination_);
      ASSERT_FALSE(failure) << failure->text();
      EXPECT_EQ(entries(), Lines{"P.app"});
      EXPECT_EQ(fileTree(destination_), source_tree_);
    }
  }

  // Copies in a child that was prepared; 0 when it went well, else the errno of the failure.
  int copyInChild(const std::function<void()>& prepare) {
    const int status = inChild([&] {
      prepare();
      const auto failure = copyTree(source_, destination_);
      return failure ? failure->error.value() : 0;
    });
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  kr::testing::ScratchFolder scratch_;
  const std::string source_ = scratch_ / "from/P.app";
  const std::string destination_ = scratch_ / "to/P.app";
  FileTree source_tree_;
};

struct Call {
  const char* name;
  int number;
  bool isAfterNaming = false;
};

class CopyKilledAt : public CopyTransaction, public ::testing::WithParamInterface<Call> {};

TEST_P(CopyKilledAt, LeavesAWholeProductOrNone) {
  const int status = inChild([&] {
    kr::testing::dieAtSystemCall(GetParam().number);
    return copyTree(source_, destination_) ? 1 : 0;
  });
  ASSERT_TRUE(WIFSIGNALED(status)) << "the copy was not killed";
  EXPECT_EQ(files::itemExists(destination_), GetParam().isAfterNaming);
  if (!GetParam().isAfterNaming) {
    ASSERT_EQ(entries().size(), 1U);
    EXPECT_TRUE(entries()[0].starts_with(kStagingPrefix));
  }
  expectWholeOrAbsent();
}

// The first file is open when its blocks are asked for; a sanitizer writes before the copy does.
INSTANTIATE_TEST_SUITE_P(Steps, CopyKilledAt,
                         ::testing::Values(Call{"TheFirstFile", SYS_ioctl},
                                           Call{"ASparseFile", SYS_ftruncate}, Call{"ALink", SYS_symlinkat},
                                           Call{"AFurtherName", SYS_linkat},
                                           Call{"TheFirstTimes", SYS_utimensat}, Call{"TheLock", SYS_flock},
                                           Call{"TheDisk", SYS_syncfs}, Call{"TheName", SYS_renameat2},
                                           Call{"TheEnd", SYS_fsync, true}),
                         [](const auto& call) { return std::string(call.param.name); });

TEST_F(CopyTransaction, KilledAtAnyMomentLeavesAWholeProductOrNone) {
  for (int round = 0; round < 12; ++round) {
    const pid_t pid = ::fork();
    if (pid == 0) ::_exit(copyTree(source_, destination_) ? 1 : 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(round * 2));
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
    expectWholeOrAbsent();
    for (const std::string& name : entries()) {
      ASSERT_EQ(std::system(("chmod -R u+w '" + scratch_ / "to/" + name + "' && rm -r '" + scratch_ / "to/" +
                             name + "'")
                                .c_str()),
                0);
    }
  }
}

class CopyFailingAt : public CopyTransaction, public ::testing::WithParamInterface<Call> {};

TEST_P(CopyFailingAt, LeavesNothing) {
  EXPECT_EQ(copyInChild([] { kr::testing::failSystemCall(GetParam().number, EIO); }), EIO);
  EXPECT_EQ(entries(), Lines{});
}

INSTANTIATE_TEST_SUITE_P(Steps, CopyFailingAt,
                         ::testing::Values(Call{"Read", SYS_read}, Call{"Write", SYS_write},
                                           Call{"SetLength", SYS_ftruncate},
                                           Call{"CreateLink", SYS_symlinkat},
                                           Call{"ReadLink", SYS_readlinkat}, Call{"SetTimes", SYS_utimensat},
                                           Call{"ListAttributes", SYS_flistxattr},
                                           Call{"CreateFolder", SYS_mkdirat}, Call{"SetMode", SYS_fchmod},
                                           Call{"BringToTheDisk", SYS_syncfs}, Call{"Name", SYS_renameat2}),
                         [](const auto& call) { return std::string(call.param.name); });

TEST_F(CopyTransaction, AFileSystemWithoutExclusiveRenamingLocksOrFurtherNamesWillDo) {
  EXPECT_EQ(copyInChild([] {
              kr::testing::failSystemCall(SYS_renameat2, EINVAL);
              kr::testing::failSystemCall(SYS_flock, EOPNOTSUPP);
            }),
            0);
  EXPECT_EQ(fileTree(destination_), source_tree_);
  EXPECT_EQ(entries(), Lines{"P.app"});
}

TEST_F(CopyTransaction, WithoutExclusiveRenamingWhatAppearedMeanwhileStays) {
  const int status = inChild([&] {
    kr::testing::failSystemCall(SYS_renameat2, EINVAL);
    const int parent = ::open((scratch_ / "to").c_str(), O_RDONLY | O_DIRECTORY);
    Staging staging;
    if (staging.create(parent)) return 1;
    scratch_.file("to/P.app", "somebody else's");
    return staging.placeFolder("P.app") == std::errc::file_exists ? 0 : 2;
  });
  EXPECT_EQ(status, 0);
  EXPECT_EQ(kr::testing::readFile(destination_), "somebody else's");
  EXPECT_EQ(entries(), (Lines{"P.app"}));
}

TEST_F(CopyTransaction, AFurtherNameThatCannotBeMadeBecomesAFileOfItsOwn) {
  EXPECT_EQ(copyInChild([] { kr::testing::failSystemCall(SYS_linkat, EPERM); }), 0);
  EXPECT_EQ(kr::testing::readFile(destination_ + "/second"), kr::testing::readFile(source_ + "/second"));
  struct stat status {};
  ASSERT_EQ(::stat((destination_ + "/second").c_str(), &status), 0);
  EXPECT_EQ(status.st_nlink, 1U);
}

TEST_F(CopyTransaction, AFullDiskLeavesNothing) {
  const std::string disk = scratch_.folder("disk");
  if (::mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=1m") != 0)
    GTEST_SKIP() << "only root can make a small disk";
  const auto failure = copyTree(source_, disk + "/P.app");
  EXPECT_EQ(files::entries(disk), Lines{});
  ::umount2(disk.c_str(), MNT_DETACH);
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->error, std::errc::no_space_on_device) << failure->text();
  EXPECT_TRUE(failure->path.starts_with(disk + "/P.app/")) << failure->path;
}

TEST_F(CopyTransaction, AFileThatMayNotGrowLeavesNothing) {
  EXPECT_EQ(copyInChild([] {
              ::signal(SIGXFSZ, SIG_IGN);
              const rlimit small{10000, 10000};
              ::setrlimit(RLIMIT_FSIZE, &small);
            }),
            EFBIG);
  EXPECT_EQ(entries(), Lines{});
}

TEST_F(CopyTransaction, WhatAKilledCopyHasLeftIsClearedAway) {
  scratch_.file("to/" + kLeftover + "/folder/file");
  ASSERT_EQ(::chmod((scratch_ / "to/" + kLeftover + "/folder").c_str(), 0500), 0);
  ASSERT_FALSE(copyTree(source_, destination_));
  EXPECT_EQ(entries(), Lines{"P.app"});
}

TEST_F(CopyTransaction, NothingElseIsClearedAway) {
  const Lines others{std::string(kStagingPrefix), std::string(kStagingPrefix) + "0123456789abcdeg",
                     kLeftover + "0", "x" + kLeftover};
  for (const std::string& name : others) scratch_.file("to/" + name + "/file");
  ASSERT_EQ(::symlink(source_.c_str(), (scratch_ / "to/" + kLeftover).c_str()), 0);
  ASSERT_FALSE(copyTree(source_, destination_));
  EXPECT_EQ(entries().size(), others.size() + 2);
  EXPECT_EQ(fileTree(source_), source_tree_);
}

TEST_F(CopyTransaction, ACopyThatIsUnderWayIsNotClearedAway) {
  const int parent = ::open((scratch_ / "to").c_str(), O_RDONLY | O_DIRECTORY);
  {
    Staging staging;
    ASSERT_FALSE(staging.create(parent));
    ASSERT_FALSE(copyTree(source_, destination_));
    EXPECT_EQ(entries().size(), 2U);
  }
  EXPECT_EQ(entries(), Lines{"P.app"});
  ::close(parent);
}

TEST_F(CopyTransaction, OfTwoCopiesToOnePlaceOneWins) {
  for (int round = 0; round < 5; ++round) {
    std::optional<Failure> one;
    std::optional<Failure> other;
    std::thread thread([&] { one = copyTree(source_, destination_); });
    other = copyTree(source_, destination_);
    thread.join();
    EXPECT_NE(one.has_value(), other.has_value());
    EXPECT_EQ((one ? one : other)->error, std::errc::file_exists);
    EXPECT_EQ(fileTree(destination_), source_tree_);
    EXPECT_EQ(entries(), Lines{"P.app"});
    ASSERT_EQ(std::system(("chmod -R u+w '" + destination_ + "' && rm -r '" + destination_ + "'").c_str()),
              0);
  }
}

TEST_F(CopyTransaction, AFileThatChangesMeanwhileIsNotCopied) {
  for (const off_t size : {3, 5}) {
    const int from = ::open(scratch_.file("four", "four").c_str(), O_RDONLY);
    const int to = ::open(scratch_.file("copy", "").c_str(), O_WRONLY);
    struct stat status {};
    ASSERT_EQ(::fstat(from, &status), 0);
    status.st_size = size;
    CloneSupport cloning = true;
    Buffer buffer(kBufferSize);
    const Outcome outcome = copyContents(from, status, to, cloning, buffer);
    ASSERT_TRUE(outcome) << size;
    EXPECT_EQ(outcome->error, ESTALE);
    ::close(from);
    ::close(to);
  }
}

}  // namespace
}  // namespace kr::platform::copy
