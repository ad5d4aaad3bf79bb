#include "installer/train/SystemPlaces.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/ScratchFolder.h"

namespace kr::train {
namespace {

using platform::replace::Identity;
using platform::replace::Place;
using platform::replace::SystemFolder;

class WhatIsTheSystems : public ::testing::Test {
 protected:
  WhatIsTheSystems() {
    scratch_.folder("real/bin");
    scratch_.folder("other");
    EXPECT_EQ(::symlink("real", (scratch_ / "link").c_str()), 0);
    scratch_.folder("homes/bob/Library");
    scratch_.folder("homes/eve");
    system_ = SystemPlaces(folders_);
  }

  static Identity identity(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return {status.st_dev, status.st_ino};
  }
  void enter(const std::string& home) {
    const posix::FileDescriptor folder =
        platform::replace::openFolder(AT_FDCWD, scratch_ / ("homes/" + home));
    system_.enter(identity(scratch_ / "homes"), folder.get(), scratch_ / ("homes/" + home));
  }

  kr::testing::ScratchFolder scratch_;
  const std::string bin_ = scratch_ / "link/bin";
  const std::string missing_ = scratch_ / "real/missing";
  const std::string library_ = scratch_ / "homes/*/Library";
  const std::vector<SystemFolder> folders_{
      {bin_.c_str(), Place::openBelow}, {missing_.c_str(), Place::open}, {library_.c_str(), Place::closed}};
  SystemPlaces system_;
};

TEST_F(WhatIsTheSystems, IsKeptWithAllThatHoldsIt) {
  for (const char* path : {"real/bin", "real", "link", ""}) {
    EXPECT_TRUE(system_.isKept(identity(scratch_ / path))) << path;
  }
  EXPECT_TRUE(system_.isKept(identity("/")));
  EXPECT_FALSE(system_.isKept(identity(scratch_ / "other")));
  EXPECT_FALSE(system_.isKept(identity(scratch_ / "homes/bob")));
}

TEST_F(WhatIsTheSystems, IsKeptByNameWhereItIsMissing) {
  EXPECT_TRUE(system_.isKeptName(missing_));
  EXPECT_TRUE(system_.isKeptName(scratch_ / "real/MISSING"));
  EXPECT_TRUE(system_.isKeptName(scratch_ / "real"));
  EXPECT_FALSE(system_.isKeptName(scratch_ / "real/miss"));
  EXPECT_FALSE(system_.isKeptName(missing_ + "/below"));
  EXPECT_FALSE(system_.isKeptName(scratch_ / "other"));
}

TEST_F(WhatIsTheSystems, HasAPlaceByWhatItIs) {
  EXPECT_EQ(system_.placeOf(identity(scratch_ / "real/bin")), Place::openBelow);
  EXPECT_EQ(system_.placeOf(identity(scratch_ / "real")), std::nullopt);
}

TEST_F(WhatIsTheSystems, IsInTheHomeThatAWayGoesThrough) {
  const Identity library = identity(scratch_ / "homes/bob/Library");
  EXPECT_FALSE(system_.isKept(library));
  enter("bob");
  EXPECT_TRUE(system_.isKept(library));
  EXPECT_EQ(system_.placeOf(library), Place::closed);
  EXPECT_FALSE(system_.isKeptName(scratch_ / "homes/eve/Library"));
  enter("eve");
  EXPECT_TRUE(system_.isKeptName(scratch_ / "homes/eve/library"));
  EXPECT_FALSE(system_.isKeptName(scratch_ / "homes/eve/Applications"));
}

}  // namespace
}  // namespace kr::train
