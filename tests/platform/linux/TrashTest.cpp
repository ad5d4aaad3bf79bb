#include "platform/linux/Trash.h"

#include <glib.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/Files.h"
#include "tests/support/FileTree.h"
#include "tests/support/Forked.h"
#include "tests/support/ScratchFolder.h"

namespace kr::platform {
namespace {

using kr::testing::fileTree;
using kr::testing::readFile;
using Lines = std::vector<std::string>;

// GLib reads these variables once, so each case (a process of its own) sets them first.
class Trash : public ::testing::Test {
 protected:
  Trash() {
    ::setenv("XDG_DATA_HOME", (scratch_ / "data").c_str(), 1);
    ::setenv("HOME", scratch_.path().c_str(), 1);
  }

  // What "Path=" of the note with this name says, its escapes undone.
  [[nodiscard]] std::string origin(const std::string& name) const {
    const std::string note = readFile(trash_ + "/info/" + name + ".trashinfo");
    EXPECT_TRUE(note.starts_with("[Trash Info]\n")) << note;
    EXPECT_NE(note.find("\nDeletionDate="), std::string::npos) << note;
    const std::size_t start = note.find("\nPath=") + 6;
    std::string path;
    for (std::size_t at = start; at < note.size() && note[at] != '\n'; ++at) {
      if (note[at] == '%') {
        path += static_cast<char>(std::stoi(note.substr(at + 1, 2), nullptr, 16));
        at += 2;
      } else {
        path += note[at];
      }
    }
    return path;
  }

  kr::testing::ScratchFolder scratch_;
  const std::string trash_ = scratch_ / "data/Trash";
};

class TrashOfAnOddName : public Trash, public ::testing::WithParamInterface<const char*> {};

TEST_P(TrashOfAnOddName, ItemsCanBeRestored) {
  const std::string path = scratch_ / "Applications/" + std::string(GetParam());
  scratch_.file("Applications/" + std::string(GetParam()) + "/Contents/file");
  const auto before = fileTree(path);
  const auto failure = moveToTrash(path);
  ASSERT_FALSE(failure) << failure->text();
  EXPECT_FALSE(files::itemExists(path));
  const Lines names = files::entries(trash_ + "/files").value_or(Lines{});
  ASSERT_EQ(names.size(), 1U);
  ASSERT_EQ(origin(names[0]), path);
  ASSERT_EQ(::rename((trash_ + "/files/" + names[0]).c_str(), origin(names[0]).c_str()), 0);
  EXPECT_EQ(fileTree(path), before);
}

const std::string kLongName = std::string(251, 'n') + ".app";

INSTANTIATE_TEST_SUITE_P(Names, TrashOfAnOddName,
                         ::testing::Values("P.app", "It's  \"quoted\" 100%.app", "New\nline.app",
                                           "Bytes \xFF\xFE.app", kLongName.c_str()),
                         [](const auto& name) { return std::to_string(name.index); });

TEST_F(Trash, ASecondItemOfThatNameIsKeptBesideTheFirst) {
  for (int time = 0; time < 2; ++time) {
    scratch_.file("P.app/file");
    ASSERT_FALSE(moveToTrash(scratch_ / "P.app"));
  }
  EXPECT_EQ(files::entries(trash_ + "/files")->size(), 2U);
  EXPECT_EQ(files::entries(trash_ + "/info")->size(), 2U);
}

TEST_F(Trash, ASecondItemOfALongNameIsKeptBesideTheFirst) {
  std::string name;
  while (name.size() < 250) name += "\xC3\xA9";  // a character of two bytes is cut in no half
  for (const char* suffix : {"", "x", ""}) {
    scratch_.file(name + suffix + "/file");
    const auto failure = moveToTrash(scratch_ / name + suffix);
    ASSERT_FALSE(failure) << failure->text();
  }
  const Lines names = files::entries(trash_ + "/files").value_or(Lines{});
  ASSERT_EQ(names.size(), 3U);
  for (const std::string& item : names) {
    EXPECT_TRUE(g_utf8_validate(item.c_str(), -1, nullptr)) << item;
    EXPECT_TRUE(origin(item).starts_with(scratch_ / name));
  }
}

TEST_F(Trash, ALinkGoesAloneAlsoWhenItLeadsNowhere) {
  const std::string outside = scratch_.file("outside/file");
  ASSERT_EQ(::symlink((scratch_ / "outside").c_str(), (scratch_ / "P.app").c_str()), 0);
  ASSERT_EQ(::symlink("nowhere", (scratch_ / "Q.app").c_str()), 0);
  ASSERT_FALSE(moveToTrash(scratch_ / "P.app"));
  ASSERT_FALSE(moveToTrash(scratch_ / "Q.app"));
  EXPECT_TRUE(files::exists(outside));
  EXPECT_FALSE(files::itemExists(scratch_ / "P.app"));
  EXPECT_FALSE(files::itemExists(scratch_ / "Q.app"));
}

TEST_F(Trash, ThatCannotBeMadeLeavesTheItem) {
  scratch_.file("data", "a file in place of the folder");
  scratch_.file("P.app/file");
  const auto failure = moveToTrash(scratch_ / "P.app");
  ASSERT_TRUE(failure);
  EXPECT_TRUE(failure->error);
  EXPECT_EQ(failure->path, scratch_ / "P.app");
  EXPECT_TRUE(failure->step.starts_with("move to the Trash (")) << failure->step;
  EXPECT_TRUE(files::exists(scratch_ / "P.app/file"));
}

// An item without a note could be restored by nobody.
TEST_F(Trash, WhoseNoteCannotBeWrittenLeavesTheItem) {
  for (const std::string& name : {std::string("P.app"), kLongName}) {
    const std::string path = scratch_ / name;
    scratch_.file(name + "/file");
    const auto before = fileTree(path);
    const int status = kr::testing::inChild([&] {
      kr::testing::failSystemCall(SYS_write, ENOSPC);
      const auto failure = moveToTrash(path);
      return failure && failure->path == path ? failure->error.value() : 0;
    });
    EXPECT_EQ(status, W_EXITCODE(ENOSPC, 0));
    EXPECT_EQ(fileTree(path), before);
    EXPECT_EQ(files::entries(trash_ + "/files"), Lines{});
    EXPECT_EQ(files::entries(trash_ + "/info"), Lines{});
  }
}

TEST_F(Trash, AnItemThatIsNotThereIsAFailure) {
  EXPECT_EQ(moveToTrash(scratch_ / "missing")->error, std::errc::no_such_file_or_directory);
}

}  // namespace
}  // namespace kr::platform
