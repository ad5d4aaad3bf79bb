// What a copy keeps, and what it refuses.
#include "platform/linux/copy/CopyTree.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fiemap.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>

#include "platform/posix/Files.h"
#include "tests/support/FileTree.h"
#include "tests/support/Forked.h"
#include "tests/support/ScratchFolder.h"

namespace kr::platform::copy {
namespace {

using kr::testing::accessListWithReader;
using kr::testing::FileTree;
using kr::testing::fileTree;
using kr::testing::inChild;
using kr::testing::readFile;
using kr::testing::setAttribute;
using kr::testing::setTimes;
using Lines = std::vector<std::string>;

class CopyTree : public ::testing::Test {
 protected:
  CopyTree() {
    files::makeFolders(source_);
    files::makeFolders(scratch_ / "to");
  }

  // Copies and compares.
  void expectCopied() {
    const FileTree before = fileTree(source_);
    const auto failure = copyTree(source_, destination_);
    ASSERT_FALSE(failure) << failure->text();
    EXPECT_EQ(fileTree(destination_), before);
    expectNothingElse({"P.app"});
  }

  void expectRefused(std::errc error, const std::string& path) {
    const auto failure = copyTree(source_, destination_);
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->error, error) << failure->text();
    EXPECT_EQ(failure->path, path);
    expectNothingElse({});
  }

  void expectNothingElse(const Lines& names) { EXPECT_EQ(files::entries(scratch_ / "to"), names); }

  std::string file(const std::string& name, const std::string& contents = "contents") const {
    return scratch_.file("from/P.app/" + name, contents);
  }
  std::string folder(const std::string& name) const { return scratch_.folder("from/P.app/" + name); }

  kr::testing::ScratchFolder scratch_;
  const std::string source_ = scratch_ / "from/P.app";
  const std::string destination_ = scratch_ / "to/P.app";
};

TEST_F(CopyTree, KeepsContentsOfEverySize) {
  for (const std::size_t size : {0UL, 1UL, 4095UL, 4096UL, 262143UL, 262144UL, 262145UL, 3000001UL}) {
    std::string bytes(size, '\0');
    for (std::size_t at = 0; at < size; ++at) bytes[at] = static_cast<char>(at * 7919 >> 3);
    file("size" + std::to_string(size), bytes);
  }
  expectCopied();
}

TEST_F(CopyTree, KeepsModesAlsoOfWriteProtectedFoldersAndWithSpecialBits) {
  int number = 0;
  for (const mode_t mode : {0400, 0444, 0555, 0600, 0640, 0777, 04755, 02755, 01644, 06555}) {
    ASSERT_EQ(::chmod(file("file" + std::to_string(number++)).c_str(), mode), 0);
  }
  for (const mode_t mode : {0500, 0555, 0700, 01777, 02775}) {
    const std::string inner = "folder" + std::to_string(number++);
    file(inner + "/file");
    ASSERT_EQ(::chmod(folder(inner).c_str(), mode), 0);
  }
  ASSERT_EQ(::chmod(source_.c_str(), 0555), 0);
  expectCopied();
}

TEST_F(CopyTree, KeepsModesWhateverTheUmask) {
  ASSERT_EQ(::chmod(file("open").c_str(), 0666), 0);
  ASSERT_EQ(::chmod(folder("openFolder").c_str(), 0777), 0);
  const mode_t previous = ::umask(0077);
  expectCopied();
  ::umask(previous);
}

TEST_F(CopyTree, KeepsTimesToTheNanosecondOfFilesFoldersAndLinks) {
  setTimes(file("deep/folder/file"), 1000000001, 123456789);
  ASSERT_EQ(::symlink("nowhere", (source_ + "/deep/link").c_str()), 0);
  setTimes(source_ + "/deep/link", 1000000002, 999999999);
  setTimes(source_ + "/deep/folder", 1000000003, 1);
  setTimes(source_ + "/deep", 1000000004, 2);
  setTimes(source_, 1000000005, 3);
  expectCopied();
}

TEST_F(CopyTree, KeepsTheTimeOfAFilesLastUseFromBeforeTheCopy) {
  setTimes(file("file"), 1000000001, 123456789);
  ASSERT_FALSE(copyTree(source_, destination_));
  struct stat status {};
  ASSERT_EQ(::stat((destination_ + "/file").c_str(), &status), 0);
  EXPECT_EQ(status.st_atim.tv_sec, 1000000001);
  EXPECT_EQ(status.st_atim.tv_nsec, 123456789);
}

TEST_F(CopyTree, KeepsExtendedAttributesAlsoOnWhatIsWriteProtected) {
  const std::string path = file("folder/file");
  ASSERT_TRUE(setAttribute(path, "user.origin", std::string("a\0b", 3)));
  ASSERT_TRUE(setAttribute(path, "user.empty", ""));
  ASSERT_TRUE(setAttribute(folder("folder"), "user.folder", std::string(1500, 'x')));
  ASSERT_TRUE(setAttribute(source_, "user.root", "root"));
  ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
  ASSERT_EQ(::chmod(folder("folder").c_str(), 0555), 0);
  expectCopied();
}

TEST_F(CopyTree, KeepsAttributesOfLinksThatOnlyTheSystemMaySet) {
  ASSERT_EQ(::symlink("nowhere", (source_ + "/link").c_str()), 0);
  if (!setAttribute(source_ + "/link", "trusted.origin", "disk"))
    GTEST_SKIP() << "only root sets such attributes";
  expectCopied();
}

TEST_F(CopyTree, KeepsAccessListsButTakesNoneOverFromTheDestination) {
  ASSERT_TRUE(setAttribute(file("listed"), "system.posix_acl_access", accessListWithReader(12345)));
  ASSERT_TRUE(setAttribute(folder("passing"), "system.posix_acl_default", accessListWithReader(12346)));
  file("passing/plain");
  ASSERT_EQ(::removexattr((source_ + "/passing/plain").c_str(), "system.posix_acl_access"), 0);
  ASSERT_TRUE(setAttribute(scratch_ / "to", "system.posix_acl_default", accessListWithReader(12347)));
  expectCopied();
}

TEST_F(CopyTree, KeepsTheGroupOfTheUserInAFolderThatPassesItsGroupOn) {
  file("folder/file");
  ASSERT_EQ(::chmod((scratch_ / "to").c_str(), 02755), 0);
  expectCopied();
}

TEST_F(CopyTree, KeepsLinksAsTheyAreAndFollowsNone) {
  const std::string outside = scratch_.file("outside/file");
  setTimes(outside, 5, 5);
  const FileTree before = fileTree(scratch_ / "outside");
  for (const std::string& target :
       {outside, scratch_ / "outside", std::string("."), std::string(".."), std::string("not there"),
        std::string("\xFF\n\"' "), std::string(4095, 'l')}) {
    const std::string name = "link" + std::to_string(std::hash<std::string>{}(target));
    ASSERT_EQ(::symlink(target.c_str(), (source_ + "/" + name).c_str()), 0);
  }
  expectCopied();
  EXPECT_EQ(fileTree(scratch_ / "outside"), before);
}

TEST_F(CopyTree, KeepsNamesOfOneFileTogether) {
  const std::string path = file("a/file");
  ASSERT_EQ(::link(path.c_str(), (source_ + "/a/second").c_str()), 0);
  ASSERT_EQ(::link(path.c_str(), (folder("b/c") + "/third").c_str()), 0);
  ASSERT_EQ(::symlink("x", (source_ + "/link").c_str()), 0);
  ASSERT_EQ(::link((source_ + "/link").c_str(), (source_ + "/b/link").c_str()), 0);
  ASSERT_EQ(::link(path.c_str(), (scratch_ / "outside").c_str()), 0);
  expectCopied();
  struct stat status {};
  ASSERT_EQ(::stat((destination_ + "/a/file").c_str(), &status), 0);
  EXPECT_EQ(status.st_nlink, 3U) << "the name outside the tree is none of the copy's";
}

TEST_F(CopyTree, KeepsHoles) {
  const std::string path = file("sparse", "start");
  const int sparse = ::open(path.c_str(), O_WRONLY);
  ASSERT_EQ(::pwrite(sparse, "middle", 6, 5L << 20), 6);
  ASSERT_EQ(::ftruncate(sparse, 64L << 20), 0);
  ::close(sparse);
  ASSERT_EQ(::truncate(file("only a hole", "").c_str(), 8L << 20), 0);
  expectCopied();
  struct stat status {};
  ASSERT_EQ(::stat((destination_ + "/sparse").c_str(), &status), 0);
  EXPECT_LT(status.st_blocks * 512, 1L << 20);
  ASSERT_EQ(::stat((destination_ + "/only a hole").c_str(), &status), 0);
  EXPECT_EQ(status.st_blocks, 0);
}

// Whether the file's first stretch on the disk belongs to another file as well.
bool sharesItsBlocks(const std::string& path) {
  alignas(fiemap) std::array<char, sizeof(fiemap) + sizeof(fiemap_extent)> memory{};
  auto* map = reinterpret_cast<fiemap*>(memory.data());
  map->fm_length = FIEMAP_MAX_OFFSET;
  map->fm_flags = FIEMAP_FLAG_SYNC;
  map->fm_extent_count = 1;
  const int file = ::open(path.c_str(), O_RDONLY);
  const bool known = ::ioctl(file, FS_IOC_FIEMAP, map) == 0 && map->fm_mapped_extents == 1;
  ::close(file);
  const auto* extent = reinterpret_cast<const fiemap_extent*>(memory.data() + sizeof(fiemap));
  return known && (extent->fe_flags & FIEMAP_EXTENT_SHARED) != 0;
}

TEST_F(CopyTree, SharesBlocksWhereTheFileSystemCan) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can make a disk";
  const std::string disk = scratch_.folder("disk");
  const std::string image = scratch_.file("image", "");
  ASSERT_EQ(::truncate(image.c_str(), 256L << 20), 0);
  ASSERT_EQ(
      std::system(("mkfs.btrfs -q '" + image + "' && mount -o loop '" + image + "' '" + disk + "'").c_str()),
      0);
  scratch_.file("disk/P.app/file", std::string(3000000, 'x'));
  scratch_.file("disk/P.app/small", "small");
  EXPECT_FALSE(sharesItsBlocks(disk + "/P.app/file"));
  const auto failure = copyTree(disk + "/P.app", disk + "/Q.app");
  EXPECT_FALSE(failure) << failure->text();
  EXPECT_EQ(fileTree(disk + "/Q.app"), fileTree(disk + "/P.app"));
  EXPECT_TRUE(sharesItsBlocks(disk + "/Q.app/file"));
  // From another file system it cannot.
  file("file", std::string(3000000, 'y'));
  EXPECT_FALSE(copyTree(source_, disk + "/R.app"));
  EXPECT_EQ(readFile(disk + "/R.app/file"), readFile(source_ + "/file"));
  EXPECT_EQ(std::system(("umount '" + disk + "'").c_str()), 0);
}

TEST_F(CopyTree, KeepsOwnersForRoot) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root gives files away";
  const std::string program = file("folder/program");
  ASSERT_EQ(::chown(program.c_str(), 1234, 5678), 0);
  ASSERT_EQ(::chmod(program.c_str(), 06755), 0);
  ASSERT_EQ(::chown(folder("folder").c_str(), 1235, 5679), 0);
  ASSERT_EQ(::symlink("x", (source_ + "/link").c_str()), 0);
  ASSERT_EQ(::lchown((source_ + "/link").c_str(), 1236, 5680), 0);
  ASSERT_EQ(::chown(source_.c_str(), 1237, 0), 0);
  expectCopied();
}

TEST_F(CopyTree, AProgramOfAnotherUserDoesNotLendTheCopyingUsersRights) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can make a file of another user";
  ASSERT_EQ(::chmod(file("program").c_str(), 06755), 0);
  ASSERT_EQ(::chmod(scratch_.path().c_str(), 0755), 0);
  ASSERT_EQ(::chmod((scratch_ / "to").c_str(), 0777), 0);
  const int status = inChild([&] {
    kr::testing::becomeOrdinaryUser();
    return copyTree(source_, destination_) ? 1 : 0;
  });
  ASSERT_EQ(status, 0);
  struct stat copy {};
  ASSERT_EQ(::stat((destination_ + "/program").c_str(), &copy), 0);
  EXPECT_EQ(copy.st_mode & 07777, 0755U);
  EXPECT_NE(copy.st_uid, 0U);
}

TEST_F(CopyTree, CopiesNamesOfAnyBytes) {
  for (const std::string& name :
       {std::string("two  words"), std::string("it's \"quoted\" $HOME `id`"), std::string("new\nline"),
        std::string("bytes \xFF\xFE"), std::string("-dash"), std::string("100% %@ %n"), std::string(255, 'n'),
        std::string("\xC3\xA9t\xC3\xA9")}) {
    file(name + "/" + name);
  }
  expectCopied();
}

TEST_F(CopyTree, CopiesAProductWithTheLongestName) {
  const std::string name = std::string(251, 'n') + ".app";
  scratch_.file("from/" + name + "/file");
  const auto failure = copyTree(scratch_ / "from/" + name, scratch_ / "to/" + name);
  ASSERT_FALSE(failure) << failure->text();
  EXPECT_EQ(fileTree(scratch_ / "to/" + name), fileTree(scratch_ / "from/" + name));
}

TEST_F(CopyTree, CopiesASingleFileOrLink) {
  ASSERT_EQ(::chmod(file("file").c_str(), 0444), 0);
  ASSERT_EQ(::symlink("nowhere", (source_ + "/link").c_str()), 0);
  for (const std::string& name : {"file", "link"}) {
    const auto failure = copyTree(source_ + "/" + name, scratch_ / "to/" + name);
    ASSERT_FALSE(failure) << failure->text();
    EXPECT_EQ(fileTree(scratch_ / "to/" + name), fileTree(source_ + "/" + name));
  }
  EXPECT_EQ(files::entries(scratch_ / "to").value_or(Lines{}).size(), 2U);
}

TEST_F(CopyTree, SlashesAtTheEndDoNotCount) {
  file("file");
  ASSERT_FALSE(copyTree(source_ + "//", destination_ + "/"));
  EXPECT_EQ(fileTree(destination_), fileTree(source_));
}

TEST_F(CopyTree, StopsAtWhatIsNoFileFolderOrLink) {
  file("a/file");
  ASSERT_EQ(::mkfifo((source_ + "/a/fifo").c_str(), 0644), 0);
  expectRefused(std::errc::not_supported, source_ + "/a/fifo");
  ASSERT_EQ(::unlink((source_ + "/a/fifo").c_str()), 0);

  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{AF_UNIX, {}};
  ASSERT_EQ(::chdir((source_ + "/a").c_str()), 0);
  std::snprintf(address.sun_path, sizeof address.sun_path, "socket");
  ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(::chdir("/"), 0);
  expectRefused(std::errc::not_supported, source_ + "/a/socket");
  ::close(socket);
}

TEST_F(CopyTree, StopsAtADevice) {
  if (::mknod((source_ + "/null").c_str(), S_IFCHR | 0666, makedev(1, 3)) != 0)
    GTEST_SKIP() << "only root makes devices";
  expectRefused(std::errc::not_supported, source_ + "/null");
}

TEST_F(CopyTree, StopsAtWhatTheUserMayNotRead) {
  for (const bool isFolder : {false, true}) {
    const std::string path = isFolder ? folder("a/locked") : file("a/unreadable");
    file("a/readable");
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
    ASSERT_EQ(::chmod(scratch_.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod((scratch_ / "to").c_str(), 0777), 0);
    const int status = inChild([&] {
      kr::testing::becomeOrdinaryUser();
      const auto failure = copyTree(source_, destination_);
      return failure && failure->error == std::errc::permission_denied && failure->path == path ? 0 : 1;
    });
    EXPECT_EQ(status, 0) << path;
    expectNothingElse({});
    ASSERT_EQ(::chmod(path.c_str(), 0755), 0);
    ASSERT_EQ(::remove(path.c_str()), 0);
  }
}

TEST_F(CopyTree, RefusesASourceThatIsNotThere) {
  const auto failure = copyTree(scratch_ / "missing", destination_);
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->text(), "open " + scratch_ / "missing: No such file or directory");
  expectNothingElse({});
}

TEST_F(CopyTree, LeavesWhatIsAtTheDestination) {
  file("file");
  scratch_.file("to/P.app", "old");
  EXPECT_EQ(copyTree(source_, destination_)->error, std::errc::file_exists);
  EXPECT_EQ(readFile(destination_), "old");
  ASSERT_EQ(::unlink(destination_.c_str()), 0);
  ASSERT_EQ(::symlink("nowhere", destination_.c_str()), 0);
  EXPECT_EQ(copyTree(source_, destination_)->error, std::errc::file_exists);
  ASSERT_EQ(::unlink(destination_.c_str()), 0);
  ASSERT_EQ(::mkdir(destination_.c_str(), 0755), 0);
  EXPECT_EQ(copyTree(source_, destination_)->error, std::errc::file_exists);
  EXPECT_EQ(files::entries(destination_), Lines{});
  expectNothingElse({"P.app"});
}

TEST_F(CopyTree, NeedsTheFolderAboveTheDestination) {
  file("file");
  EXPECT_EQ(copyTree(source_, scratch_ / "missing/P.app")->error, std::errc::no_such_file_or_directory);
  EXPECT_FALSE(files::itemExists(scratch_ / "missing"));
  ASSERT_EQ(::symlink("nowhere", (scratch_ / "dangling").c_str()), 0);
  EXPECT_EQ(copyTree(source_, scratch_ / "dangling/P.app")->error, std::errc::no_such_file_or_directory);
  EXPECT_FALSE(files::itemExists(scratch_ / "nowhere"));
  EXPECT_EQ(copyTree(source_, file("file") + "/P.app")->error, std::errc::not_a_directory);
  for (const std::string& path : {std::string(), std::string("/"), scratch_ / "to/.", scratch_ / "to/.."}) {
    EXPECT_EQ(copyTree(source_, path)->error, std::errc::invalid_argument) << path;
  }
}

TEST_F(CopyTree, RefusesADestinationInsideTheSource) {
  folder("a");
  const FileTree before = fileTree(source_);
  ASSERT_EQ(::symlink((source_ + "/a").c_str(), (scratch_ / "link").c_str()), 0);
  for (const std::string& path : {source_ + "/copy", source_ + "/a/copy", scratch_ / "link/copy",
                                  scratch_ / "to/../from/P.app/a/copy"}) {
    const auto failure = copyTree(source_, path);
    ASSERT_TRUE(failure) << path;
    EXPECT_EQ(failure->text(), "copy a folder into itself, to " + path + ": Invalid argument");
  }
  EXPECT_EQ(fileTree(source_), before);
}

}  // namespace
}  // namespace kr::platform::copy
