#include "installer/WriteProbe.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/Services.h"
#include "platform/posix/Files.h"
#include "platform/testing/RecordingFileOperations.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/Forked.h"
#include "tests/support/ScratchFolder.h"

namespace kr {
namespace {

using Lines = std::vector<std::string>;

class WriteProbe : public ::testing::Test {
 protected:
  WriteProbe() : services_(platform::services()) {
    services_.log = &log_;
    services_.files = &files_;
    scope_.emplace(services_);
  }

  // The system's own answer, for an ordinary user.
  static bool asOrdinaryUser(const std::function<bool()>& question) {
    return testing::inChild([&] {
             testing::becomeOrdinaryUser();
             return question() ? 0 : 1;
           }) == 0;
  }

  testing::ScratchFolder scratch_;
  platform::testing::RecordingLog log_;
  std::vector<std::string> calls_;
  platform::testing::RecordingFileOperations files_{calls_};

 private:
  platform::Services services_;
  std::optional<platform::ScopedServices> scope_;
};

TEST_F(WriteProbe, AFileIsWritableWhenItOpensAndIsNeverCreated) {
  const std::string file = scratch_.file("file");
  EXPECT_TRUE(canWriteToFile(file));
  EXPECT_FALSE(canWriteToFile(scratch_ / "missing"));
  EXPECT_FALSE(files::itemExists(scratch_ / "missing"));
  EXPECT_FALSE(canWriteToFile(scratch_.path())) << "a folder does not open for writing";
  EXPECT_FALSE(canWriteToFile(""));
  ASSERT_EQ(::chmod(scratch_.path().c_str(), 0755), 0);
  ASSERT_EQ(::chmod(file.c_str(), 0444), 0);
  EXPECT_FALSE(asOrdinaryUser([&] { return canWriteToFile(file); }));
}

TEST_F(WriteProbe, AFolderIsWritableWhenAFileCanBeMadeInItAndNothingStaysBehind) {
  EXPECT_TRUE(canWriteToDirectory(scratch_.folder("folder")));
  EXPECT_EQ(files::entries(scratch_ / "folder"), Lines{});
  EXPECT_FALSE(canWriteToDirectory(scratch_ / "missing"));
  EXPECT_FALSE(canWriteToDirectory(scratch_.file("file")));
  ASSERT_EQ(::chmod(scratch_.path().c_str(), 0755), 0);
  ASSERT_EQ(::chmod((scratch_ / "folder").c_str(), 0555), 0);
  EXPECT_FALSE(asOrdinaryUser([&] { return canWriteToDirectory(scratch_ / "folder"); }));
}

TEST_F(WriteProbe, AFolderWithoutANameIsNotTheWorkingFolder) {
  ASSERT_EQ(::chdir(scratch_.path().c_str()), 0);
  EXPECT_FALSE(canWriteToDirectory(""));
  EXPECT_TRUE(canWriteToDirectory("."));
}

TEST_F(WriteProbe, TheProbeIsNamedByRandomAndThenByRand) {
  constexpr unsigned kSeed = 20260101;
  const auto name = [](long number) { return formatted("temp-%X", number); };
  ::srandom(kSeed);
  const std::string first = name(::random());
  std::srand(kSeed + 1);
  const std::string second = name(std::rand());
  const std::string third = name(std::rand());
  // The first two names are taken, one of them by a link that leads nowhere.
  scratch_.file(first, "first");
  ASSERT_EQ(::symlink("nowhere", (scratch_ / second).c_str()), 0);
  ::srandom(kSeed);
  std::srand(kSeed + 1);
  EXPECT_TRUE(canWriteToDirectory(scratch_.path()));
  EXPECT_EQ(testing::readFile(scratch_ / first), "first");
  EXPECT_TRUE(files::itemExists(scratch_ / second));
  EXPECT_FALSE(files::itemExists(scratch_ / "nowhere"));
  EXPECT_FALSE(files::itemExists(scratch_ / third));

  // Had the third name been taken, the fourth would have been tried: the generator stands behind it.
  EXPECT_NE(name(std::rand()), third);
  // A folder in the probe's place is not opened either.
  scratch_.folder(third);
  ::srandom(kSeed);
  std::srand(kSeed + 1);
  EXPECT_TRUE(canWriteToDirectory(scratch_.path()));
  EXPECT_TRUE(files::isFolder(scratch_ / third));
}

TEST_F(WriteProbe, PermissionsAreAskedOfTheFileOperations) {
  files_.writable = {{"/yes", true}, {"/no", false}};
  EXPECT_TRUE(canWriteToFileOrDirectory("/yes"));
  EXPECT_FALSE(canWriteToFileOrDirectory("/no"));
}

TEST_F(WriteProbe, ADestinationThatIsNotThereNeedsAWritableFolder) {
  EXPECT_TRUE(canWriteToPath(scratch_ / "P.app"));
  EXPECT_EQ(log_.lines(), Lines{});
  files_.writable[scratch_.path()] = false;
  EXPECT_FALSE(canWriteToPath(scratch_ / "P.app"));
  EXPECT_EQ(log_.lines(), Lines{"Cannot write to folder " + scratch_.path()});
}

TEST_F(WriteProbe, TheNearestFolderThatExistsCounts) {
  files_.writable[scratch_.path()] = false;
  EXPECT_FALSE(canWriteToPath(scratch_ / "not/there/P.app"));
  EXPECT_EQ(log_.lines(), Lines{"Cannot write to folder " + scratch_.path()});
  scratch_.folder("not");
  EXPECT_TRUE(canWriteToPath(scratch_ / "not/there/P.app"));
  ASSERT_EQ(::symlink("nowhere", (scratch_ / "dangling").c_str()), 0);
  EXPECT_FALSE(canWriteToPath(scratch_ / "dangling/P.app"));
}

TEST_F(WriteProbe, AnItemThatIsThereMustBeWritableItself) {
  const std::string item = scratch_.folder("P.app");
  files_.writable[item] = false;
  EXPECT_FALSE(canWriteToPath(item));
  EXPECT_EQ(log_.lines(), Lines{"Cannot write to item " + item});
  files_.writable = {{item, true}, {scratch_.path(), false}};
  EXPECT_FALSE(canWriteToPath(item));
  EXPECT_EQ(log_.lines().back(), "Cannot write to folder " + scratch_.path());
  files_.writable = {};
  EXPECT_TRUE(canWriteToPath(item));
}

TEST_F(WriteProbe, TheWalkUpEndsAtTheRootAndAtTheBeginningOfAPath) {
  files_.writable = {{"/", false}, {"", false}, {"a", false}};
  EXPECT_FALSE(canWriteToPath("/not/there/at/all"));
  EXPECT_FALSE(canWriteToPath("/P.app"));
  EXPECT_FALSE(canWriteToPath("P.app"));
  EXPECT_FALSE(canWriteToPath("no folder/P.app"));
  EXPECT_FALSE(canWriteToPath("a/P.app"));
  EXPECT_FALSE(canWriteToPath(""));
  EXPECT_FALSE(canWriteToPath("/"));
  EXPECT_EQ(log_.lines(),
            (Lines{"Cannot write to folder /", "Cannot write to folder /", "Cannot write to folder ",
                   "Cannot write to folder ", "Cannot write to folder a", "Cannot write to folder ",
                   "Cannot write to item /"}));
}

}  // namespace
}  // namespace kr
