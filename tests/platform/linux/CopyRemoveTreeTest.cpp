#include "platform/linux/copy/RemoveTree.h"

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/Files.h"
#include "tests/support/ScratchFolder.h"

namespace kr::platform::copy {
namespace {

using Lines = std::vector<std::string>;

class RemoveTree : public ::testing::Test {
 protected:
  kr::testing::ScratchFolder scratch_;
};

TEST_F(RemoveTree, TakesEverythingThatIsInside) {
  scratch_.file("tree/a/b/file");
  scratch_.folder("tree/empty");
  ASSERT_EQ(::mkfifo((scratch_ / "tree/a/fifo").c_str(), 0600), 0);
  EXPECT_FALSE(removeTree(scratch_ / "tree"));
  EXPECT_EQ(files::entries(scratch_.path()), Lines{});
}

TEST_F(RemoveTree, TakesFoldersThatTheirOwnerHasProtected) {
  for (const mode_t mode : {0555, 0444, 0111, 0}) {
    scratch_.file("tree/protected/inner/file");
    for (const char* name : {"tree/protected/inner", "tree/protected", "tree"}) {
      ASSERT_EQ(::chmod((scratch_ / name).c_str(), mode), 0);
    }
    const auto failure = removeTree(scratch_ / "tree");
    EXPECT_FALSE(failure) << failure->text();
    EXPECT_EQ(files::entries(scratch_.path()), Lines{});
  }
}

TEST_F(RemoveTree, FollowsNoLink) {
  const std::string outside = scratch_.file("outside/file");
  scratch_.folder("tree");
  ASSERT_EQ(::symlink((scratch_ / "outside").c_str(), (scratch_ / "tree/link").c_str()), 0);
  ASSERT_EQ(::symlink((scratch_ / "outside").c_str(), (scratch_ / "link").c_str()), 0);
  EXPECT_FALSE(removeTree(scratch_ / "tree"));
  EXPECT_FALSE(removeTree(scratch_ / "link"));
  EXPECT_EQ(files::entries(scratch_.path()), Lines{"outside"});
  EXPECT_TRUE(files::exists(outside));
}

TEST_F(RemoveTree, LeavesWhatIsMountedInside) {
  const std::string disk = scratch_.folder("tree/disk");
  if (::mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=1m") != 0) GTEST_SKIP() << "only root can mount";
  const std::string path = scratch_.file("tree/disk/file");
  const auto failure = removeTree(scratch_ / "tree");
  EXPECT_TRUE(files::exists(path));
  ::umount2(disk.c_str(), MNT_DETACH);
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->text(), "delete " + disk + ": Device or resource busy");
}

TEST_F(RemoveTree, SaysWhatCouldNotBeDeleted) {
  EXPECT_EQ(removeTree(scratch_ / "missing")->text(),
            "delete " + scratch_ / "missing: No such file or directory");
  for (const std::string& path : {std::string(), std::string("/"), scratch_ / ".", scratch_ / ".."}) {
    EXPECT_EQ(removeTree(path)->error, std::errc::invalid_argument) << path;
  }
}

}  // namespace
}  // namespace kr::platform::copy
