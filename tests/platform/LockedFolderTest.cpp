#include "platform/posix/LockedFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/posix/Files.h"
#include "tests/support/ScratchFolder.h"

namespace kr::posix {
namespace {

constexpr std::string_view kPrefix = ".prefix-";

class LockedFolder : public ::testing::Test {
 protected:
  kr::testing::ScratchFolder scratch_;
  const FileDescriptor parent_{::open(scratch_.path().c_str(), O_RDONLY | O_DIRECTORY)};
  std::string name_;
  FileDescriptor folder_;
};

TEST_F(LockedFolder, IsNewAndItsOwnersAlone) {
  ASSERT_FALSE(createLockedFolder(parent_.get(), kPrefix, name_, folder_));
  EXPECT_TRUE(isLockedFolderName(kPrefix, name_)) << name_;
  struct stat status {};
  ASSERT_EQ(::stat((scratch_ / name_).c_str(), &status), 0);
  EXPECT_EQ(status.st_mode, static_cast<mode_t>(S_IFDIR | 0700));
  std::string second;
  FileDescriptor secondFolder;
  ASSERT_FALSE(createLockedFolder(parent_.get(), kPrefix, second, secondFolder));
  EXPECT_NE(second, name_);
}

TEST_F(LockedFolder, IsAbandonedWhenNobodyHoldsIt) {
  ASSERT_FALSE(createLockedFolder(parent_.get(), kPrefix, name_, folder_));
  EXPECT_FALSE(openAbandonedFolder(parent_.get(), name_));
  folder_.reset();
  const FileDescriptor taken = openAbandonedFolder(parent_.get(), name_);
  EXPECT_TRUE(taken);
  EXPECT_FALSE(openAbandonedFolder(parent_.get(), name_));
}

TEST_F(LockedFolder, IsNoLink) {
  scratch_.folder("real");
  ASSERT_EQ(::symlink("real", (scratch_ / "link").c_str()), 0);
  EXPECT_FALSE(openAbandonedFolder(parent_.get(), "link"));
  EXPECT_TRUE(openAbandonedFolder(parent_.get(), "real"));
}

TEST_F(LockedFolder, HasANameOfItsOwn) {
  EXPECT_TRUE(isLockedFolderName(kPrefix, ".prefix-0123456789abcdef"));
  for (const char* name :
       {"", ".prefix-", ".prefix-0123456789abcde", ".prefix-0123456789abcdef0", ".prefix-0123456789abcdeg",
        ".prefix-0123456789ABCDEF", "x.prefix-0123456789abcdef"}) {
    EXPECT_FALSE(isLockedFolderName(kPrefix, name)) << name;
  }
}

TEST_F(LockedFolder, SaysWhyItCannotBeMade) {
  const FileDescriptor file(::open(scratch_.file("file").c_str(), O_RDONLY));
  EXPECT_EQ(createLockedFolder(file.get(), kPrefix, name_, folder_), std::errc::not_a_directory);
}

}  // namespace
}  // namespace kr::posix
