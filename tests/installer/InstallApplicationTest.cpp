// Order, answers and log lines of an installation, over file operations that write down what they are asked.
#include "installer/InstallApplication.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "platform/FileOperations.h"
#include "platform/Services.h"
#include "platform/SystemServices.h"
#include "platform/posix/Files.h"
#include "platform/testing/FixedDesktop.h"
#include "platform/testing/RecordingFileOperations.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/FileTree.h"
#include "tests/support/ScratchFolder.h"

namespace kr {
namespace {

using Lines = std::vector<std::string>;
using testing::fileTree;

class NotedApplications final : public platform::Applications {
 public:
  explicit NotedApplications(Lines& calls) : calls_(calls) {}

  std::int32_t registerApplication(const std::string&) override { return 0; }
  bool open(const std::string&) override { return true; }
  void openInBackground(const std::string&) override {}
  bool openAddress(const std::string&) override { return true; }
  void noteFileSystemChanged(const std::string& path) override { calls_.push_back("note " + path); }

 private:
  Lines& calls_;
};

class InstallApplicationBase : public ::testing::Test {
 protected:
  // `next` does the file operations; none only writes them down.
  explicit InstallApplicationBase(platform::FileOperations* next)
      : files_(calls_, next), services_(platform::services()) {
    services_.log = &log_;
    services_.files = &files_;
    services_.applications = &applications_;
    services_.program = &program_;
    scope_.emplace(services_);
    scratch_.file("disk/P.app/Contents/file", "new");
    scratch_.folder("Applications");
  }

  // Fails the call as it will be written down.
  void fail(const std::string& call) { files_.failures[call] = reason_; }

  int install(const std::optional<std::string>& wrapper = std::nullopt) {
    return InstallApplication(source_, destination_, wrapper);
  }

  testing::ScratchFolder scratch_;
  const std::string source_ = scratch_ / "disk/P.app";
  const std::string applicationsFolder_ = scratch_ / "Applications";
  std::string destination_ = scratch_ / "Applications/P.app";
  const platform::Failure reason_{"copy", "/some/file", std::make_error_code(std::errc::io_error)};
  Lines calls_;
  platform::testing::RecordingLog log_;
  platform::testing::RecordingFileOperations files_;
  platform::testing::FixedProgram program_;

 private:
  NotedApplications applications_{calls_};
  platform::Services services_;
  std::optional<platform::ScopedServices> scope_;
};

class InstallApplicationSteps : public InstallApplicationBase {
 protected:
  InstallApplicationSteps() : InstallApplicationBase(nullptr) {}

  const std::string wrapper_ = scratch_ / "disk/Wrapper";
};

TEST_F(InstallApplicationSteps, AProductAloneIsCopiedAndNoted) {
  EXPECT_EQ(install(), 0);
  EXPECT_EQ(calls_, (Lines{"copy " + source_ + " > " + destination_, "note " + destination_}));
  EXPECT_EQ(log_.lines(), Lines{});
}

TEST_F(InstallApplicationSteps, WhatIsThereGoesToTheTrashFirst) {
  scratch_.folder("Applications/P.app");
  EXPECT_EQ(install(), 0);
  EXPECT_EQ(calls_, (Lines{"recycle " + destination_, "copy " + source_ + " > " + destination_,
                           "note " + destination_}));
}

TEST_F(InstallApplicationSteps, ALinkThatLeadsNowhereCountsAsBeingThere) {
  ASSERT_EQ(::symlink("nowhere", destination_.c_str()), 0);
  EXPECT_EQ(install(), 0);
  EXPECT_EQ(calls_.front(), "recycle " + destination_);
}

TEST_F(InstallApplicationSteps, WithoutATrashNothingIsCopied) {
  scratch_.folder("Applications/P.app");
  fail("recycle " + destination_);
  EXPECT_EQ(install(), 1);
  EXPECT_EQ(calls_, Lines{"recycle " + destination_});
  EXPECT_EQ(log_.lines(), (Lines{"ERROR -- Could not trash '" + destination_ + "'",
                                 "ERROR -- Could not trash existing " + destination_, reason_.text()}));
}

TEST_F(InstallApplicationSteps, AFailedCopyIsLoggedWithItsReason) {
  fail("copy " + source_ + " > " + destination_);
  EXPECT_EQ(install(), 2);
  EXPECT_EQ(log_.lines(), (Lines{"ERROR -- Could not copy myself to " + destination_, reason_.text()}));
  EXPECT_EQ(calls_.back(), "copy " + source_ + " > " + destination_) << "nothing to note";
}

TEST_F(InstallApplicationSteps, EntriesOfTheWrapperComeFirstAndTakeTheirPlaces) {
  scratch_.file("disk/Wrapper/one");
  scratch_.file("disk/Wrapper/two");
  scratch_.file("Applications/two");
  scratch_.folder("Applications/P.app");
  EXPECT_EQ(install(wrapper_), 0);
  Lines expected;
  const Lines entries = files::entries(wrapper_).value_or(Lines{});
  for (const std::string& entry : entries) {
    const std::string item = applicationsFolder_ + "/" + entry;
    if (entry == "two") expected.push_back("remove " + item);
    expected.push_back("copy " + wrapper_ + "/" + entry + " > " + item);
    expected.push_back("note " + item);
  }
  expected.push_back("recycle " + destination_);
  expected.push_back("copy " + source_ + " > " + destination_);
  expected.push_back("note " + destination_);
  EXPECT_EQ(calls_, expected);
}

TEST_F(InstallApplicationSteps, ADanglingLinkInTheWayOfAnEntryIsDeleted) {
  scratch_.file("disk/Wrapper/one");
  ASSERT_EQ(::symlink("nowhere", (applicationsFolder_ + "/one").c_str()), 0);
  EXPECT_EQ(install(wrapper_), 0);
  EXPECT_EQ(calls_.front(), "remove " + applicationsFolder_ + "/one");
}

TEST_F(InstallApplicationSteps, AnItemThatCannotBeDeletedDoesNotKeepTheCopyFromBeingTried) {
  scratch_.file("disk/Wrapper/one");
  const std::string item = scratch_.file("Applications/one");
  fail("remove " + item);
  EXPECT_EQ(install(wrapper_), 0);
  EXPECT_EQ(log_.lines(), (Lines{"ERROR -- Could not delete " + item, reason_.text()}));
  EXPECT_EQ(calls_[1], "copy " + wrapper_ + "/one > " + item);
}

TEST_F(InstallApplicationSteps, AnEntryThatCannotBeCopiedEndsTheInstallation) {
  scratch_.file("disk/Wrapper/one");
  scratch_.file("disk/Wrapper/two");
  scratch_.folder("Applications/P.app");
  const std::string last = files::entries(wrapper_)->back();
  const std::string item = applicationsFolder_ + "/" + last;
  fail("copy " + wrapper_ + "/" + last + " > " + item);
  EXPECT_EQ(install(wrapper_), 2);
  EXPECT_EQ(log_.lines(), (Lines{"ERROR -- Could not copy auxiliary item to " + item, reason_.text()}));
  EXPECT_EQ(calls_.size(), 3U) << "the first entry stays, and nothing comes after the second";
  EXPECT_EQ(calls_.back(), "copy " + wrapper_ + "/" + last + " > " + item);
}

TEST_F(InstallApplicationSteps, TheWrapperBecomesAFolderThatIsNotThere) {
  scratch_.file("disk/Wrapper/one");
  const std::string folder = applicationsFolder_ + "/Wrapper";
  destination_ = folder + "/P.app";
  EXPECT_EQ(install(wrapper_), 0);
  EXPECT_EQ(calls_, (Lines{"copy " + wrapper_ + " > " + folder, "note " + folder,
                           "copy " + source_ + " > " + destination_, "note " + destination_}));
  calls_.clear();
  fail("copy " + wrapper_ + " > " + folder);
  EXPECT_EQ(install(wrapper_), 2);
  EXPECT_EQ(calls_, Lines{"copy " + wrapper_ + " > " + folder});
  EXPECT_EQ(log_.lines(), (Lines{"ERROR -- Could not copy wrapper to " + folder, reason_.text()}));
}

TEST_F(InstallApplicationSteps, LinksInTheGivenPathsAreResolvedBeforeAStepCanPullThemAway) {
  scratch_.file("disk/Wrapper/one");
  ASSERT_EQ(::symlink((scratch_ / "disk").c_str(), (applicationsFolder_ + "/one").c_str()), 0);
  EXPECT_EQ(InstallApplication(applicationsFolder_ + "/one/P.app", destination_,
                               applicationsFolder_ + "/one/Wrapper"),
            0);
  EXPECT_EQ(calls_, (Lines{"remove " + applicationsFolder_ + "/one",
                           "copy " + wrapper_ + "/one > " + applicationsFolder_ + "/one",
                           "note " + applicationsFolder_ + "/one", "copy " + source_ + " > " + destination_,
                           "note " + destination_}));
}

// Installations that would destroy what they copy from: nothing is asked of the file operations.
class InstallApplicationRefusals : public InstallApplicationSteps {
 protected:
  void expectRefused(const std::string& line, const std::optional<std::string>& wrapper = std::nullopt) {
    const auto before = fileTree(scratch_.path());
    EXPECT_EQ(install(wrapper), 2);
    EXPECT_EQ(calls_, Lines{});
    EXPECT_EQ(fileTree(scratch_.path()), before);
    const Lines lines = log_.lines();
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[lines.size() - 2], line);
    EXPECT_NE(lines.back(), "");
  }

  void expectProductRefused() { expectRefused("ERROR -- Could not copy myself to " + destination_); }
};

TEST_F(InstallApplicationRefusals, ASourceThatIsNoReadableFolder) {
  EXPECT_EQ(InstallApplication(scratch_ / "missing", destination_, {}), 2);
  EXPECT_EQ(InstallApplication(scratch_.file("file"), destination_, {}), 2);
  EXPECT_EQ(InstallApplication("", destination_, {}), 2);
  EXPECT_EQ(calls_, Lines{});
  const Lines lines = log_.lines();
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "ERROR -- Could not copy myself to " + destination_), 3);
}

TEST_F(InstallApplicationRefusals, ADestinationThatIsNoItem) {
  for (const std::string& path : {std::string(), std::string("/"), std::string("P.app"), scratch_ / ".",
                                  scratch_ / "Applications/.."}) {
    destination_ = path;
    expectProductRefused();
  }
}

TEST_F(InstallApplicationRefusals, TheSourceItself) {
  destination_ = source_;
  expectProductRefused();
  ASSERT_EQ(::symlink((scratch_ / "disk").c_str(), (scratch_ / "link").c_str()), 0);
  destination_ = scratch_ / "link/P.app";
  expectProductRefused();
  ASSERT_EQ(::symlink(source_.c_str(), (applicationsFolder_ + "/Q.app").c_str()), 0);
  destination_ = applicationsFolder_ + "/Q.app";
  expectProductRefused();
  destination_ = scratch_ / "disk/../disk/P.app";
  expectProductRefused();
}

TEST_F(InstallApplicationRefusals, ADestinationInsideTheSource) {
  destination_ = source_ + "/Contents/P.app";
  expectProductRefused();
  destination_ = source_ + "/not/there/P.app";
  expectProductRefused();
  ASSERT_EQ(::symlink((source_ + "/Contents").c_str(), (scratch_ / "link").c_str()), 0);
  destination_ = scratch_ / "link/P.app";
  expectProductRefused();
}

TEST_F(InstallApplicationRefusals, ASourceInsideTheDestination) {
  destination_ = scratch_ / "disk";
  expectProductRefused();
  ASSERT_EQ(::symlink((scratch_ / "disk").c_str(), (scratch_ / "link").c_str()), 0);
  destination_ = scratch_ / "link";
  expectProductRefused();
}

TEST_F(InstallApplicationRefusals, AWrapperThatWouldBeCopiedIntoItself) {
  const std::string line = "ERROR -- Could not copy auxiliary item to ";
  scratch_.file("disk/Wrapper/Inner/file");
  destination_ = wrapper_ + "/Q.app";
  expectRefused(line + wrapper_, wrapper_);
  destination_ = wrapper_ + "/Inner/Q.app";
  expectRefused(line + wrapper_ + "/Inner", wrapper_);
  destination_ = wrapper_ + "/not/there/Q.app";
  expectRefused("ERROR -- Could not copy wrapper to " + wrapper_ + "/not/there", wrapper_);
  ASSERT_EQ(::symlink(wrapper_.c_str(), (scratch_ / "link").c_str()), 0);
  destination_ = scratch_ / "link/Q.app";
  expectRefused(line + scratch_ / "link", wrapper_);
  destination_ = wrapper_ + "/Q.app";
  expectRefused(line + wrapper_, scratch_ / "link");
}

TEST_F(InstallApplicationRefusals, AnItemInTheWayThatHoldsWhatIsCopied) {
  const std::string line = "ERROR -- Could not copy auxiliary item to " + scratch_ / "disk";
  destination_ = scratch_ / "Q.app";
  for (const std::string& kept : {std::string("disk/Wrapper"), std::string("elsewhere/Wrapper")}) {
    scratch_.file(kept + "/disk/file");
    expectRefused(line, scratch_ / kept);
  }
}

TEST_F(InstallApplicationRefusals, AnItemInTheWayThatHoldsTheWrapper) {
  destination_ = scratch_ / "Q.app";
  scratch_.folder("tools/Wrapper");
  ASSERT_EQ(::symlink("nowhere", (scratch_ / "tools/Wrapper/tools").c_str()), 0);
  expectRefused("ERROR -- Could not copy auxiliary item to " + scratch_ / "tools",
                scratch_ / "tools/Wrapper");
}

TEST_F(InstallApplicationRefusals, AnItemInTheWayThatHoldsTheInstaller) {
  scratch_.file("disk/Wrapper/Tools/file");
  program_.bundle = scratch_.folder("Applications/Tools/VelmoraInstaller.app");
  expectRefused("ERROR -- Could not copy auxiliary item to " + applicationsFolder_ + "/Tools", wrapper_);
}

TEST_F(InstallApplicationRefusals, AWrapperForAMissingFolderThatCannotBeListed) {
  destination_ = scratch_ / "Missing/P.app";
  expectRefused("ERROR -- Could not copy wrapper to " + scratch_ / "Missing", scratch_.file("no folder"));
}

TEST_F(InstallApplicationRefusals, AnItemInTheWayToWhichTheEntryLinks) {
  scratch_.file("Applications/Data/file");
  scratch_.folder("disk/Wrapper");
  ASSERT_EQ(::symlink((applicationsFolder_ + "/Data/file").c_str(), (wrapper_ + "/Data").c_str()), 0);
  expectRefused("ERROR -- Could not copy auxiliary item to " + applicationsFolder_ + "/Data", wrapper_);
}

TEST_F(InstallApplicationRefusals, AWrapperInsideTheItemToReplace) {
  const std::string wrapper = scratch_.folder("Applications/P.app/Wrapper");
  scratch_.file("Applications/P.app/Wrapper/one");
  expectRefused("ERROR -- Could not copy auxiliary item to " + destination_, wrapper);
}

TEST_F(InstallApplicationRefusals, AWrapperThatCannotBeListed) {
  expectRefused("ERROR -- Could not copy auxiliary item to " + applicationsFolder_,
                scratch_.file("no folder"));
}

// The same over the system's own operations.
class InstallApplicationOnDisk : public InstallApplicationBase {
 protected:
  InstallApplicationOnDisk() : InstallApplicationBase(&platform::systemFileOperations()) {
    ::setenv("XDG_DATA_HOME", (scratch_ / "data").c_str(), 1);
    scratch_.folder("data");
  }

  const std::string trash_ = scratch_ / "data/Trash/files";
};

TEST_F(InstallApplicationOnDisk, AnInstallerInTheCopyThatTheWrapperReplacesIsNoReasonToRefuse) {
  scratch_.file("disk/Wrapper/P.app/old");
  program_.bundle = scratch_.folder("Applications/P.app/VelmoraInstaller.app");
  EXPECT_EQ(install(scratch_ / "disk/Wrapper"), 0);
  EXPECT_TRUE(files::exists(destination_));
  EXPECT_FALSE(files::exists(destination_ + "/old"));
}

TEST_F(InstallApplicationOnDisk, TheOldCopyIsInTheTrashAndTheNewOneInItsPlace) {
  scratch_.file("Applications/P.app/old", "old");
  const auto old = fileTree(destination_);
  EXPECT_EQ(install(), 0);
  EXPECT_EQ(fileTree(destination_), fileTree(source_));
  EXPECT_EQ(fileTree(trash_ + "/P.app"), old);
  EXPECT_EQ(files::entries(applicationsFolder_), Lines{"P.app"});
}

TEST_F(InstallApplicationOnDisk, AWrapperThatHoldsTheProductIsCopiedAndTheCopyFromTheSourceCounts) {
  scratch_.file("disk/Wrapper/P.app/Contents/file", "the wrapper's");
  scratch_.file("disk/Wrapper/licence.txt", "licence");
  scratch_.file("Applications/licence.txt", "old licence");
  scratch_.file("Applications/P.app/old");
  EXPECT_EQ(install(scratch_ / "disk/Wrapper"), 0);
  EXPECT_EQ(fileTree(destination_), fileTree(source_));
  EXPECT_EQ(testing::readFile(applicationsFolder_ + "/licence.txt"), "licence");
  EXPECT_EQ(testing::readFile(trash_ + "/P.app/Contents/file"), "the wrapper's");
}

TEST_F(InstallApplicationOnDisk, ASourceInsideItsWrapperIsInstalled) {
  scratch_.file("disk/licence.txt", "licence");
  EXPECT_EQ(install(scratch_ / "disk"), 0);
  EXPECT_EQ(fileTree(destination_), fileTree(source_));
  EXPECT_EQ(testing::readFile(applicationsFolder_ + "/licence.txt"), "licence");
}

TEST_F(InstallApplicationOnDisk, AFolderThatIsNotThereIsAFailureWithoutAWrapper) {
  destination_ = scratch_ / "not/there/P.app";
  EXPECT_EQ(install(), 2);
  EXPECT_EQ(log_.lines().front(), "ERROR -- Could not copy myself to " + destination_);
  EXPECT_FALSE(files::itemExists(scratch_ / "not"));
  ASSERT_EQ(::symlink("nowhere", (scratch_ / "dangling").c_str()), 0);
  destination_ = scratch_ / "dangling/P.app";
  EXPECT_EQ(install(), 2);
  EXPECT_FALSE(files::itemExists(scratch_ / "nowhere"));
}

TEST_F(InstallApplicationOnDisk, AFailedCopyLeavesTheOldCopyInTheTrash) {
  scratch_.file("Applications/P.app/old", "old");
  ASSERT_EQ(::mkfifo((source_ + "/fifo").c_str(), 0600), 0);
  EXPECT_EQ(install(), 2);
  EXPECT_EQ(log_.lines(), (Lines{"ERROR -- Could not copy myself to " + destination_,
                                 "copy special file " + source_ + "/fifo: Operation not supported"}));
  EXPECT_EQ(files::entries(applicationsFolder_), Lines{});
  EXPECT_EQ(testing::readFile(trash_ + "/P.app/old"), "old");
}

}  // namespace
}  // namespace kr
