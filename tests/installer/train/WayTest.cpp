#include "installer/train/Way.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/Paths.h"
#include "tests/support/ScratchFolder.h"

namespace kr::train {
namespace {

using platform::replace::Place;
using platform::replace::SystemFolder;
using platform::replace::systemFolders;

std::vector<std::string> split(const std::string& path) {
  std::vector<std::string> components;
  for (std::size_t start = 1; start < path.size();) {
    const std::size_t end = std::min(path.find('/', start), path.size());
    components.push_back(path.substr(start, end - start));
    start = end + 1;
  }
  return components;
}

class WayToADestination : public ::testing::Test {
 protected:
  Checked open(const std::string& path, std::span<const SystemFolder> closed = systemFolders()) {
    return openWay(split(path), way_, closed);
  }
  Status statusOf(const std::string& path, std::span<const SystemFolder> closed = systemFolders()) {
    const Checked refused = open(path, closed);
    return refused ? refused->status : Status::installed;
  }
  std::string reasonFor(const std::string& path) {
    const Checked refused = open(path);
    return refused ? refused->reason : "(not refused)";
  }
  [[nodiscard]] static bool is(int folder, const std::string& path) {
    struct stat open {};
    struct stat named {};
    return ::fstat(folder, &open) == 0 && ::stat(path.c_str(), &named) == 0 && open.st_ino == named.st_ino &&
           open.st_dev == named.st_dev;
  }

  kr::testing::ScratchFolder scratch_;
  Way way_;
};

TEST_F(WayToADestination, LeadsToTheParentFolder) {
  const std::string folder = scratch_.folder("a/b");
  const Checked refused = open(folder);
  ASSERT_FALSE(refused) << refused->reason;
  EXPECT_TRUE(is(way_.parent.get(), folder));
  EXPECT_TRUE(is(way_.above.get(), scratch_ / "a"));
}

TEST_F(WayToADestination, MayLackTheLastFolderAlone) {
  const std::string folder = scratch_.folder("a");
  ASSERT_FALSE(open(folder + "/missing"));
  EXPECT_FALSE(way_.parent);
  EXPECT_TRUE(is(way_.above.get(), folder));
  EXPECT_EQ(reasonFor(folder + "/missing/b"), folder + "/missing does not exist");
}

TEST_F(WayToADestination, IsRefusedWhereAnyComponentIsALink) {
  scratch_.folder("a/b/c");
  ASSERT_EQ(::symlink("a", (scratch_ / "first").c_str()), 0);
  ASSERT_EQ(::symlink("b", (scratch_ / "a/middle").c_str()), 0);
  ASSERT_EQ(::symlink("c", (scratch_ / "a/b/last").c_str()), 0);
  ASSERT_EQ(::symlink("nowhere", (scratch_ / "a/dangling").c_str()), 0);
  for (const char* path : {"first/b/c", "a/middle/c", "a/b/last", "a/dangling"}) {
    EXPECT_EQ(statusOf(scratch_ / path), Status::destinationRefused) << path;
  }
  EXPECT_EQ(reasonFor(scratch_ / "a/middle/c"), scratch_ / "a/middle" + " is a link or no folder");
  EXPECT_EQ(statusOf(scratch_ / "a/b/c"), Status::installed);
}

TEST_F(WayToADestination, IsRefusedWhereAComponentIsNoFolder) {
  scratch_.file("file");
  ASSERT_EQ(::mkfifo((scratch_ / "fifo").c_str(), 0600), 0);
  EXPECT_EQ(statusOf(scratch_ / "file"), Status::destinationRefused);
  EXPECT_EQ(statusOf(scratch_ / "file/a"), Status::destinationRefused);
  EXPECT_EQ(statusOf(scratch_ / "fifo"), Status::destinationRefused);
}

TEST_F(WayToADestination, IsRefusedWhereEverybodyMayChangeAFolder) {
  scratch_.folder("a/b");
  ASSERT_EQ(::chmod((scratch_ / "a").c_str(), 0777), 0);
  EXPECT_EQ(reasonFor(scratch_ / "a/b"), scratch_ / "a" + " can be changed by everybody");
  EXPECT_EQ(statusOf(scratch_ / "a"), Status::destinationRefused);
  // With the sticky bit everybody may add, but not take away or rename what is another's.
  ASSERT_EQ(::chmod((scratch_ / "a").c_str(), 01777), 0);
  EXPECT_EQ(statusOf(scratch_ / "a/b"), Status::installed);
  // A group is not everybody: that of the Applications folder on macOS.
  ASSERT_EQ(::chmod((scratch_ / "a").c_str(), 0775), 0);
  EXPECT_EQ(statusOf(scratch_ / "a/b"), Status::installed);
}

TEST_F(WayToADestination, IsRefusedWhereItCannotBeGone) {
  EXPECT_EQ(statusOf(scratch_.folder("a") + "/" + std::string(300, 'x')), Status::destinationUnreachable);
}

TEST_F(WayToADestination, EndsInNoFolderOfTheSystem) {
  for (const char* path :
       {"/usr", "/usr/lib", "/usr/bin", "/etc", "/var/lib", "/dev", "/proc", "/usr/share", "/usr/local/bin",
        "/usr/local/lib", "/usr/missing", "/usr/local/libexec", "/root"}) {
    EXPECT_EQ(statusOf(path), Status::destinationRefused) << path;
  }
  for (const char* path : {"/opt", "/var/tmp", "/tmp", "/usr/local/missing", "/home/missing"}) {
    EXPECT_EQ(statusOf(path), Status::installed) << path;
  }
}

TEST_F(WayToADestination, EndsInNoFolderThatProductsLieOnlyBelow) {
  for (const char* path : {"/usr/local", "/home", "/srv", "/var/opt", "/var/local", "/media", "/mnt"}) {
    EXPECT_EQ(statusOf(path), Status::destinationRefused) << path;
  }
  const std::string homes = scratch_.folder("homes");
  const std::string missing = scratch_ / "missing";
  const std::vector<SystemFolder> folders{{homes.c_str(), Place::openBelow},
                                          {missing.c_str(), Place::openBelow}};
  ASSERT_TRUE(open(homes, folders));
  EXPECT_EQ(open(homes, folders)->reason, homes + " has room for products only in its folders");
  EXPECT_EQ(statusOf(missing, folders), Status::destinationRefused);
  EXPECT_EQ(statusOf(homes + "/missing", folders), Status::installed);
  EXPECT_EQ(statusOf(scratch_.folder("homes/bob"), folders), Status::installed);
}

TEST_F(WayToADestination, EndsInNoFolderOfAUsersSettings) {
  scratch_.folder("homes/bob/Library/Agents");
  scratch_.folder("homes/bob/Applications");
  scratch_.folder("homes/eve");
  const std::string homes = scratch_ / "homes";
  const std::string library = homes + "/*/Library";
  const std::vector<SystemFolder> folders{{homes.c_str(), Place::openBelow},
                                          {library.c_str(), Place::closed}};
  for (const char* path : {"/bob/Library", "/bob/Library/Agents", "/eve/Library"}) {
    EXPECT_EQ(statusOf(homes + path, folders), Status::destinationRefused) << path;
  }
  for (const char* path : {"/bob/Applications", "/eve", "/eve/Applications"}) {
    EXPECT_EQ(statusOf(homes + path, folders), Status::installed) << path;
  }
}

TEST_F(WayToADestination, KnowsFoldersOfTheSystemByWhatTheyAre) {
  scratch_.folder("system/open/closed");
  scratch_.folder("system/inner");
  ASSERT_EQ(::symlink("system", (scratch_ / "name").c_str()), 0);
  // Named through a link, as some systems have them.
  const std::string system = scratch_ / "name";
  const std::string open = scratch_ / "name/open";
  const std::string closed = scratch_ / "name/open/closed";
  const std::string missing = scratch_ / "system/open/missing";
  const std::vector<SystemFolder> folders{{system.c_str(), Place::closed},
                                          {open.c_str(), Place::open},
                                          {closed.c_str(), Place::closed},
                                          {missing.c_str(), Place::closed}};
  EXPECT_EQ(statusOf(scratch_ / "system", folders), Status::destinationRefused);
  EXPECT_EQ(statusOf(scratch_ / "system/inner", folders), Status::destinationRefused);
  EXPECT_EQ(statusOf(scratch_ / "system/new", folders), Status::destinationRefused);
  EXPECT_EQ(statusOf(scratch_ / "system/open", folders), Status::installed);
  EXPECT_EQ(statusOf(scratch_ / "system/open/new", folders), Status::installed);
  EXPECT_EQ(statusOf(scratch_ / "system/open/closed", folders), Status::destinationRefused);
  EXPECT_EQ(statusOf(scratch_ / "system/open/missing", folders), Status::destinationRefused);
  EXPECT_EQ(statusOf(scratch_.path(), folders), Status::installed);
}

}  // namespace
}  // namespace kr::train
