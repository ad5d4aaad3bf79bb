#include "platform/posix/Files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "platform/posix/FileDescriptor.h"
#include "tests/support/ScratchFolder.h"

namespace kr::files {
namespace {

class Files : public ::testing::Test {
 protected:
  kr::testing::ScratchFolder scratch_;
};

TEST_F(Files, ADanglingLinkIsAnItemThatDoesNotExist) {
  ASSERT_EQ(::symlink("nowhere", (scratch_ / "link").c_str()), 0);
  EXPECT_FALSE(exists(scratch_ / "link"));
  EXPECT_TRUE(itemExists(scratch_ / "link"));
  EXPECT_FALSE(itemExists(scratch_ / "other"));
}

TEST_F(Files, AFolderMayBeReachedThroughALink) {
  scratch_.folder("folder");
  scratch_.file("file");
  ASSERT_EQ(::symlink("folder", (scratch_ / "link").c_str()), 0);
  EXPECT_TRUE(isFolder(scratch_ / "link"));
  EXPECT_TRUE(isReadableFolder(scratch_ / "folder"));
  EXPECT_FALSE(isFolder(scratch_ / "file"));
  EXPECT_FALSE(isReadableFolder(scratch_ / "file"));
}

TEST_F(Files, EntriesAreAllNamesButTheTwoDots) {
  scratch_.file("folder/.hidden");
  scratch_.file("folder/b\xFF\n");
  auto names = entries(scratch_ / "folder").value();
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{".hidden", "b\xFF\n"}));
  EXPECT_EQ(entries(scratch_ / "missing"), std::nullopt);
}

TEST_F(Files, EntriesOfAnOpenFolderAreTheSameHoweverOftenTheyAreAskedFor) {
  scratch_.file("folder/a");
  scratch_.file("folder/b");
  for (const int kind : {O_RDONLY, O_PATH}) {
    const posix::FileDescriptor folder(::open((scratch_ / "folder").c_str(), kind | O_DIRECTORY));
    for (int time = 0; time < 2; ++time) {
      auto names = entries(folder.get());
      ASSERT_TRUE(names);
      std::sort(names->begin(), names->end());
      EXPECT_EQ(names, (std::vector<std::string>{"a", "b"}));
    }
  }
  EXPECT_FALSE(entries(posix::FileDescriptor(::open(scratch_.file("file").c_str(), O_RDONLY)).get()));
  EXPECT_FALSE(entries(-1));
}

TEST_F(Files, AFolderThatMayBeListedAndNotEnteredHasEntries) {
  scratch_.file("folder/a");
  const posix::FileDescriptor folder(::open((scratch_ / "folder").c_str(), O_RDONLY | O_DIRECTORY));
  ASSERT_EQ(::fchmod(folder.get(), 0400), 0);
  for (int time = 0; time < 2; ++time) EXPECT_EQ(entries(folder.get()), std::vector<std::string>{"a"});
  ASSERT_EQ(::fchmod(folder.get(), 0700), 0);
}

TEST_F(Files, ContentsAreReadUpToTheLimit) {
  scratch_.file("file", std::string(20000, 'x'));
  EXPECT_EQ(contents(scratch_ / "file").value().size(), 20000U);
  EXPECT_EQ(contents(scratch_ / "file", 19999), std::nullopt);
  EXPECT_EQ(contents(scratch_ / "missing"), std::nullopt);
  EXPECT_EQ(contents(scratch_.path()), std::nullopt);
}

TEST_F(Files, AFifoIsNotWaitedFor) {
  ASSERT_EQ(::mkfifo((scratch_ / "fifo").c_str(), 0600), 0);
  EXPECT_EQ(contents(scratch_ / "fifo"), std::nullopt);
}

TEST_F(Files, MissingFoldersAreMadeAllTheWay) {
  EXPECT_TRUE(makeFolders(scratch_ / "a/b/c"));
  EXPECT_TRUE(isFolder(scratch_ / "a/b/c"));
  EXPECT_TRUE(makeFolders(scratch_ / "a/b/c"));
  scratch_.file("file");
  EXPECT_FALSE(makeFolders(scratch_ / "file/x"));
  EXPECT_FALSE(makeFolders(""));
}

TEST_F(Files, ResolvedPathsHaveNoLinks) {
  scratch_.folder("folder");
  ASSERT_EQ(::symlink("folder", (scratch_ / "link").c_str()), 0);
  EXPECT_EQ(resolved(scratch_ / "link/../link"), scratch_ / "folder");
  EXPECT_EQ(resolved(scratch_ / "missing"), std::nullopt);
}

TEST_F(Files, ContentsOfALargeFileAreComplete) {
  std::string large(3'000'001, 'x');
  large.back() = 'y';
  scratch_.file("file", large);
  EXPECT_EQ(contents(scratch_ / "file"), large);
  EXPECT_EQ(contents(scratch_ / "file", large.size()), large);
  EXPECT_EQ(contents(scratch_ / "file", large.size() - 1), std::nullopt);
  scratch_.file("empty", "");
  EXPECT_EQ(contents(scratch_ / "empty"), "");
}

TEST_F(Files, FirstBytesAreThoseThatThereAre) {
  scratch_.file("file", "abcdef");
  EXPECT_EQ(firstBytes(scratch_ / "file", 4), "abcd");
  EXPECT_EQ(firstBytes(scratch_ / "file", 10), "abcdef");
  EXPECT_EQ(firstBytes(scratch_ / "missing", 4), std::nullopt);
  EXPECT_EQ(firstBytes(scratch_.path(), 4), std::nullopt);
}

TEST_F(Files, AppendPutsBytesAtTheEnd) {
  EXPECT_TRUE(append(scratch_ / "file", "ab"));
  EXPECT_TRUE(append(scratch_ / "file", ""));
  EXPECT_TRUE(append(scratch_ / "file", std::string("\0c", 2)));
  EXPECT_EQ(kr::testing::readFile(scratch_ / "file"), std::string("ab\0c", 4));
  EXPECT_FALSE(append(scratch_ / "missing/file", "x"));
  EXPECT_FALSE(append(scratch_.path(), "x"));
  EXPECT_FALSE(append("/dev/full", "x"));
}

}  // namespace
}  // namespace kr::files
