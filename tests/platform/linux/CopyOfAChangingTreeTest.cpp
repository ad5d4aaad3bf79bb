// What happens to the source at the worst moment: between two system calls of the copy.
#include <errno.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>

#include "platform/linux/copy/CopyTree.h"
#include "platform/posix/Files.h"
#include "tests/support/FileTree.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/SharedLines.h"
#include "tests/support/Tracer.h"

namespace kr::platform::copy {
namespace {

using kr::testing::Verdict;
using kr::testing::WatchedCall;
using Lines = std::vector<std::string>;

// Where the call's descriptor leads, if its first argument is one.
std::string pathOfDescriptor(const WatchedCall& call) {
  const std::string link =
      "/proc/" + std::to_string(call.thread) + "/fd/" + std::to_string(static_cast<int>(call.arguments[0]));
  std::array<char, 4096> target{};
  const ssize_t size = ::readlink(link.c_str(), target.data(), target.size());
  return size < 0 ? "" : std::string(target.data(), static_cast<std::size_t>(size));
}

// Calls that get at the bytes of an open file, in whatever way.
bool getsAtBytes(long number) {
  constexpr std::array kCalls{SYS_read,  SYS_pread64, SYS_readv,           SYS_preadv2,
                              SYS_lseek, SYS_mmap,    SYS_copy_file_range, SYS_sendfile};
  return std::find(kCalls.begin(), kCalls.end(), number) != kCalls.end();
}

class CopyOfAChangingTree : public ::testing::Test {
 protected:
  CopyOfAChangingTree() {
    scratch_.file("from/P.app/folder/before", "before");
    scratch_.file("from/P.app/folder/after", "after");
    scratch_.file("outside/file", "nobody's business");
    scratch_.folder("to");
  }

  // Copies, and does the change once, just before the first call for which `isMoment` holds. Answers the
  // failure as a line of the log would have it; empty when there was none. No staging folder may be left.
  std::string copyDuring(const std::function<void()>& change,
                         const std::function<bool(const WatchedCall&)>& isMoment) {
    kr::testing::SharedLines lines;
    int changes = 0;
    const kr::testing::Traced traced = kr::testing::trace(
        [&] {
          const auto failure = copyTree(source_, destination_, Durability::inCache);
          if (failure) lines.line(failure->text());
          return failure ? 1 : 0;
        },
        [&](const WatchedCall& call) {
          if (changes == 0 && isMoment(call)) {
            ++changes;
            change();
          }
          return Verdict::pass();
        });
    EXPECT_EQ(changes, 1) << "the moment has not come";
    EXPECT_TRUE(WIFEXITED(traced.status)) << traced.status;
    const Lines text = lines.lines();
    if (text.empty()) return "";
    EXPECT_EQ(text.size(), 1U);
    EXPECT_EQ(files::entries(scratch_ / "to"), files::itemExists(destination_) ? Lines{"P.app"} : Lines{});
    return text[0];
  }

  // Before the first call that names the victim: it has been listed then.
  std::string copyAfterListing(const std::function<void()>& change) {
    return copyDuring(change, [&](const WatchedCall& call) { return call.path() == "victim"; });
  }

  // When the victim has been opened and looked at.
  std::string copyAfterOpening(const std::function<void()>& change) {
    return copyDuring(change, [&](const WatchedCall& call) {
      return getsAtBytes(call.number) && pathOfDescriptor(call) == victim_;
    });
  }

  void makeVictim(const std::string& contents = "contents") const {
    scratch_.file("from/P.app/folder/victim", contents);
  }
  void makeVictimFolder() const { scratch_.file("from/P.app/folder/victim/file"); }

  kr::testing::ScratchFolder scratch_;
  const std::string source_ = scratch_ / "from/P.app";
  const std::string victim_ = source_ + "/folder/victim";
  const std::string destination_ = scratch_ / "to/P.app";
};

TEST_F(CopyOfAChangingTree, AFileThatHasGoneSinceItWasListed) {
  makeVictim();
  EXPECT_EQ(copyAfterListing([&] { ::unlink(victim_.c_str()); }),
            "open " + victim_ + ": No such file or directory");
}

TEST_F(CopyOfAChangingTree, ALinkThatHasGoneSinceItWasListed) {
  ASSERT_EQ(::symlink("target", victim_.c_str()), 0);
  EXPECT_EQ(copyAfterListing([&] { ::unlink(victim_.c_str()); }),
            "look at " + victim_ + ": No such file or directory");
}

TEST_F(CopyOfAChangingTree, AFolderThatHasGoneSinceItWasListed) {
  makeVictimFolder();
  EXPECT_EQ(copyAfterListing([&] { kr::testing::removeAll(victim_); }),
            "open " + victim_ + ": No such file or directory");
}

TEST_F(CopyOfAChangingTree, AFifoInPlaceOfAFileDoesNotHoldItUp) {
  makeVictim();
  EXPECT_EQ(copyAfterListing([&] {
              ::unlink(victim_.c_str());
              ::mkfifo(victim_.c_str(), 0600);
            }),
            "copy special file " + victim_ + ": Operation not supported");
}

TEST_F(CopyOfAChangingTree, ALinkInPlaceOfAFileIsNotFollowed) {
  makeVictim();
  EXPECT_EQ(copyAfterListing([&] {
              ::unlink(victim_.c_str());
              ::symlink((scratch_ / "outside/file").c_str(), victim_.c_str());
            }),
            "open " + victim_ + ": Too many levels of symbolic links");
}

TEST_F(CopyOfAChangingTree, ALinkInPlaceOfAFolderIsNotFollowed) {
  makeVictimFolder();
  EXPECT_EQ(copyAfterListing([&] {
              kr::testing::removeAll(victim_);
              ::symlink((scratch_ / "outside").c_str(), victim_.c_str());
            }),
            "open " + victim_ + ": Not a directory");
}

class CopyOfAChangingFile : public CopyOfAChangingTree, public ::testing::WithParamInterface<std::size_t> {
 protected:
  const std::string reason_ = "copy, as it changes meanwhile, " + victim_ + ": Stale file handle";
};

TEST_P(CopyOfAChangingFile, ThatGrowsIsNamed) {
  makeVictim(std::string(GetParam(), 'x'));
  EXPECT_EQ(copyAfterOpening([&] {
              const int file = ::open(victim_.c_str(), O_WRONLY | O_APPEND);
              EXPECT_EQ(::write(file, "more", 4), 4);
              ::close(file);
            }),
            reason_);
}

TEST_P(CopyOfAChangingFile, ThatShrinksIsNamed) {
  makeVictim(std::string(GetParam(), 'x'));
  EXPECT_EQ(copyAfterOpening(
                [&] { EXPECT_EQ(::truncate(victim_.c_str(), static_cast<off_t>(GetParam()) - 1), 0); }),
            reason_);
}

TEST_P(CopyOfAChangingFile, ThatShrinksToNothingIsNamed) {
  makeVictim(std::string(GetParam(), 'x'));
  EXPECT_EQ(copyAfterOpening([&] { EXPECT_EQ(::truncate(victim_.c_str(), 0), 0); }), reason_);
}

TEST_P(CopyOfAChangingFile, ThatShrinksWithHolesIsNamed) {
  makeVictim(std::string(GetParam(), 'x'));
  ASSERT_EQ(::truncate(victim_.c_str(), 1 << 20), 0);
  EXPECT_EQ(copyAfterOpening([&] { EXPECT_EQ(::truncate(victim_.c_str(), 1 << 19), 0); }), reason_);
}

INSTANTIATE_TEST_SUITE_P(Sizes, CopyOfAChangingFile, ::testing::Values(1, 8192, 262144, 400000),
                         ::testing::PrintToStringParamName());

TEST_F(CopyOfAChangingTree, AFileThatHasGoneOnceItIsOpenIsCopied) {
  makeVictim("last words");
  EXPECT_EQ(copyAfterOpening([&] { ::unlink(victim_.c_str()); }), "");
  EXPECT_EQ(kr::testing::readFile(destination_ + "/folder/victim"), "last words");
}

TEST_F(CopyOfAChangingTree, WhatComesIntoBeingAtTheDestinationMeanwhileStays) {
  makeVictim();
  EXPECT_EQ(copyAfterOpening([&] { scratch_.file("to/P.app", "intruder"); }),
            "give the copy its name, " + destination_ + ": File exists");
  EXPECT_EQ(kr::testing::readFile(destination_), "intruder");
}

}  // namespace
}  // namespace kr::platform::copy
