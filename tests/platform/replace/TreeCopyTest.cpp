#include "platform/replace/TreeCopy.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/FileTimes.h"
#include "tests/support/FileTree.h"
#include "tests/support/ScratchFolder.h"

namespace kr::platform::replace {
namespace {

using kr::testing::readFile;

// The rest of a system on which files cannot be cloned, unless a test says otherwise.
class PlainContents : public Contents {
 public:
  bool clone(int source, int folder, const std::string& name) noexcept override {
    if (!clones) return false;
    const posix::FileDescriptor copy(::openat(folder, name.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0644));
    return copy && move(source, copy.get());
  }
  bool copyFile(int source, int copy) noexcept override {
    ++copies;
    if (error != 0) {
      errno = error;
      return false;
    }
    const bool moved = move(source, copy);
    if (!changed.empty()) kr::testing::setTimes(changed, 1, 1);
    return moved;
  }
  bool copyAttributes(int, int) noexcept override {
    errno = EIO;
    return attributesCanBeCopied;
  }
  std::optional<Problem> unprotect(int) noexcept override { return problem; }

  bool clones = false;
  bool attributesCanBeCopied = true;
  int copies = 0;
  int error = 0;
  std::string changed;  // a file that somebody else writes meanwhile
  std::optional<Problem> problem;

 private:
  static bool move(int source, int copy) noexcept {
    std::array<char, 4096> buffer{};
    for (ssize_t count = 0; (count = ::read(source, buffer.data(), buffer.size())) != 0;) {
      if (count < 0 || ::write(copy, buffer.data(), static_cast<std::size_t>(count)) != count) return false;
    }
    return true;
  }
};

class TreeCopy : public ::testing::Test {
 protected:
  std::optional<Failure> copy(const std::string& from, const std::string& to) {
    return copyTree({folder_.get(), from, scratch_ / from}, {folder_.get(), to, scratch_ / to}, contents_);
  }
  [[nodiscard]] struct stat status(const std::string& name) const {
    struct stat status {};
    EXPECT_EQ(::lstat((scratch_ / name).c_str(), &status), 0) << name;
    return status;
  }

  kr::testing::ScratchFolder scratch_;
  const posix::FileDescriptor folder_{::open(scratch_.path().c_str(), O_RDONLY | O_DIRECTORY)};
  PlainContents contents_;
};

TEST_F(TreeCopy, HasTheFilesFoldersLinksAndTimesOfTheSource) {
  scratch_.file("source/inner/file", "one");
  scratch_.file("source/empty", "");
  scratch_.folder("source/nothing");
  ::symlink("../absent", (scratch_ / "source/link").c_str());
  for (const char* name : {"source/inner/file", "source/link", "source/inner", "source"}) {
    kr::testing::setTimes(scratch_ / name, 1'000'000'000, 123'456'789);
  }
  EXPECT_FALSE(copy("source", "copy"));
  EXPECT_EQ(readFile(scratch_ / "copy/inner/file"), "one");
  EXPECT_EQ(readFile(scratch_ / "copy/empty"), "");
  EXPECT_TRUE(S_ISDIR(status("copy/nothing").st_mode));
  EXPECT_EQ(std::filesystem::read_symlink(scratch_ / "copy/link"), "../absent");
  for (const char* name : {"copy/inner/file", "copy/link", "copy/inner", "copy"}) {
    EXPECT_EQ(posix::lastChange(status(name)).tv_sec, 1'000'000'000) << name;
    EXPECT_EQ(posix::lastChange(status(name)).tv_nsec, 123'456'789) << name;
  }
}

TEST_F(TreeCopy, SetsNoUserAndIsWrittenByItsOwnerAlone) {
  ::chmod(scratch_.file("source/file").c_str(), 06777);
  ::chmod(scratch_.file("source/program").c_str(), 0555);
  ::chmod((scratch_ / "source").c_str(), 03775);
  if (::geteuid() == 0) {
    EXPECT_EQ(::chown((scratch_ / "source/file").c_str(), 65534, 65534), 0);
    ::chmod((scratch_ / "source/file").c_str(), 06777);
  }
  EXPECT_FALSE(copy("source", "copy"));
  EXPECT_EQ(status("copy/file").st_mode & 07777, 0755U);
  EXPECT_EQ(status("copy/program").st_mode & 07777, 0555U);
  EXPECT_EQ(status("copy").st_mode & 07777, 01755U);
  EXPECT_EQ(status("copy/file").st_uid, ::geteuid());
}

TEST_F(TreeCopy, MakesFilesOfTheirOwnOfTheNamesOfOne) {
  scratch_.file("source/one");
  ::link((scratch_ / "source/one").c_str(), (scratch_ / "source/two").c_str());
  EXPECT_FALSE(copy("source", "copy"));
  EXPECT_EQ(status("copy/one").st_nlink, 1U);
  EXPECT_EQ(status("copy/two").st_nlink, 1U);
}

TEST_F(TreeCopy, TakesWhatCouldBeCloned) {
  scratch_.file("source/file", "one");
  ::chmod((scratch_ / "source/file").c_str(), 0666);
  contents_.clones = true;
  EXPECT_FALSE(copy("source", "copy"));
  EXPECT_EQ(contents_.copies, 0);
  EXPECT_EQ(readFile(scratch_ / "copy/file"), "one");
  EXPECT_EQ(status("copy/file").st_mode & 07777, 0644U);
}

TEST_F(TreeCopy, RefusesWhatIsNoFileFolderOrLink) {
  scratch_.folder("source");
  ::mkfifo((scratch_ / "source/pipe").c_str(), 0600);
  const auto failed = copy("source", "copy");
  ASSERT_TRUE(failed);
  EXPECT_EQ(failed->step, "copy special file");
  EXPECT_EQ(failed->path, scratch_ / "source/pipe");
  EXPECT_EQ(failed->error, std::errc::not_supported);
}

TEST_F(TreeCopy, TakesNobodysPlace) {
  scratch_.file("source");
  scratch_.folder("folder");
  scratch_.file("taken", "other");
  ::symlink("target", (scratch_ / "link").c_str());
  for (const auto& [from, to] : {std::pair{"source", "taken"}, {"source", "link"}, {"folder", "taken"}}) {
    const auto failed = copy(from, to);
    ASSERT_TRUE(failed) << to;
    EXPECT_EQ(failed->error, std::errc::file_exists) << to;
    EXPECT_EQ(failed->path, scratch_ / to);
  }
  EXPECT_EQ(readFile(scratch_ / "taken"), "other");
  EXPECT_FALSE(std::filesystem::exists(scratch_ / "target"));
}

TEST_F(TreeCopy, NoticesAFileThatChangesMeanwhile) {
  scratch_.file("source");
  contents_.changed = scratch_ / "source";
  const auto failed = copy("source", "copy");
  ASSERT_TRUE(failed);
  EXPECT_EQ(failed->error.value(), ESTALE);
  EXPECT_EQ(failed->path, scratch_ / "source");
}

TEST_F(TreeCopy, SaysWhichSideFailed) {
  scratch_.file("source/file");
  contents_.error = ENOSPC;
  auto failed = copy("source", "full");
  ASSERT_TRUE(failed);
  EXPECT_EQ(failed->step, "write");
  EXPECT_EQ(failed->path, scratch_ / "full/file");
  contents_.error = EIO;
  failed = copy("source", "broken");
  ASSERT_TRUE(failed);
  EXPECT_EQ(failed->step, "copy");
  EXPECT_EQ(failed->path, scratch_ / "source/file");
  contents_.error = 0;
  contents_.attributesCanBeCopied = false;
  failed = copy("source", "plain");
  ASSERT_TRUE(failed);
  EXPECT_EQ(failed->step, "copy attributes of");
  EXPECT_EQ(failed->path, scratch_ / "source");
  failed = copy("absent", "copy");
  ASSERT_TRUE(failed);
  EXPECT_EQ(failed->step, "look at");
  EXPECT_EQ(failed->error, std::errc::no_such_file_or_directory);
}

TEST_F(TreeCopy, IsNoCopyWhileSomethingProtectsIt) {
  scratch_.file("source");
  contents_.problem = Contents::Problem{"set flags of", std::make_error_code(std::errc::io_error)};
  const auto failed = copy("source", "copy");
  ASSERT_TRUE(failed);
  EXPECT_EQ(failed->step, "set flags of");
  EXPECT_EQ(failed->path, scratch_ / "copy");
  EXPECT_EQ(failed->error, std::errc::io_error);
}

}  // namespace
}  // namespace kr::platform::replace
