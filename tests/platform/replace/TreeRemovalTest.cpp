#include "platform/replace/TreeRemoval.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "platform/posix/FileDescriptor.h"
#include "tests/support/ScratchFolder.h"

namespace kr::platform::replace {
namespace {

class TreeRemoval : public ::testing::Test {
 protected:
  std::optional<Failure> remove(const std::string& name) {
    return removeTree({folder_.get(), name, scratch_ / name});
  }
  [[nodiscard]] bool isThere(const std::string& name) const {
    return std::filesystem::exists(std::filesystem::symlink_status(scratch_ / name));
  }

  kr::testing::ScratchFolder scratch_;
  const posix::FileDescriptor folder_{::open(scratch_.path().c_str(), O_RDONLY | O_DIRECTORY)};
};

TEST_F(TreeRemoval, TakesFilesFoldersAndLinks) {
  scratch_.file("tree/inner/file");
  scratch_.folder("tree/empty");
  scratch_.file("file");
  scratch_.file("kept/file");
  ::symlink("../kept", (scratch_ / "tree/link").c_str());
  ::symlink("kept", (scratch_ / "link").c_str());
  for (const char* name : {"tree", "file", "link"}) {
    EXPECT_FALSE(remove(name)) << name;
    EXPECT_FALSE(isThere(name)) << name;
  }
  EXPECT_TRUE(isThere("kept/file"));
}

TEST_F(TreeRemoval, TakesFoldersThatAreWriteProtected) {
  scratch_.file("tree/inner/file");
  ::chmod((scratch_ / "tree/inner").c_str(), 0555);
  ::chmod((scratch_ / "tree").c_str(), 0555);
  EXPECT_FALSE(remove("tree"));
  EXPECT_FALSE(isThere("tree"));
}

TEST_F(TreeRemoval, SaysWhatIsNotThere) {
  const auto failed = remove("absent");
  ASSERT_TRUE(failed);
  EXPECT_EQ(failed->step, "delete");
  EXPECT_EQ(failed->path, scratch_ / "absent");
  EXPECT_EQ(failed->error, std::errc::no_such_file_or_directory);
}

TEST_F(TreeRemoval, LeavesWhatIsMountedInside) {
  const std::string disk = scratch_.folder("tree/disk");
  if (::mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=1m") != 0) GTEST_SKIP() << "only root can mount";
  scratch_.file("tree/disk/file");
  const auto failed = remove("tree");
  EXPECT_TRUE(isThere("tree/disk/file"));
  ::umount2(disk.c_str(), MNT_DETACH);
  ASSERT_TRUE(failed);
  EXPECT_EQ(failed->error, std::errc::device_or_resource_busy);
  EXPECT_EQ(failed->path, disk);
}

}  // namespace
}  // namespace kr::platform::replace
