#include "platform/Applications.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "platform/Clock.h"
#include "platform/Log.h"
#include "platform/Services.h"
#include "platform/SystemServices.h"
#include "platform/posix/Files.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/ScratchFolder.h"

namespace kr::platform {
namespace {

class DesktopApplications : public ::testing::Test {
 protected:
  DesktopApplications() {
    ::setenv("XDG_DATA_HOME", (scratch_ / "data").c_str(), 1);
    ::setenv("HOME", scratch_.path().c_str(), 1);
    Services set = services();
    set.log = &log_;
    scope_.emplace(set);
  }

  // A bundle whose program writes its working folder and what it has open into a file beside it.
  std::string bundle(const std::string& name, const std::string& program, const std::string& information) {
    const std::string path = scratch_ / name;
    const std::string executable = scratch_.file(name + "/" + program, kProgram);
    ::chmod(executable.c_str(), 0755);
    if (!information.empty()) scratch_.file(name + "/Contents/Info.plist", information);
    return path;
  }

  std::string started() {
    for (int wait = 0; wait < 200 && !files::exists(scratch_ / "started"); ++wait)
      services().clock->sleep(0.02);
    return files::contents(scratch_ / "started").value_or("(not started)");
  }

  static constexpr const char* kProgram =
      "#!/bin/sh\n"
      "{ pwd; readlink /proc/self/fd/0; ls /proc/$$/fd | tr '\\n' ' '; } > \"$HOME/started.part\"\n"
      "mv \"$HOME/started.part\" \"$HOME/started\"\n";

  kr::testing::ScratchFolder scratch_;
  testing::RecordingLog log_;
  Applications& applications_ = systemApplications();

 private:
  std::optional<ScopedServices> scope_;
};

TEST_F(DesktopApplications, ABundleIsStartedInTheHomeFolderWithNothingOfTheCallersOpen) {
  const int inherited = ::dup(STDERR_FILENO);  // not marked to be closed
  EXPECT_TRUE(applications_.open(bundle("P.app", "P", "")));
  const std::string report = started();
  EXPECT_TRUE(report.starts_with(scratch_.path() + "\n/dev/null\n")) << report;
  EXPECT_EQ(report.find(" " + std::to_string(inherited) + " "), std::string::npos) << report;
  ::close(inherited);
}

TEST_F(DesktopApplications, TheInformationNamesTheProgramInEitherLayout) {
  EXPECT_TRUE(applications_.open(bundle("P.app", "Contents/MacOS/Other", "{ CFBundleExecutable = Other; }")));
  EXPECT_NE(started(), "(not started)");
}

TEST_F(DesktopApplications, ABundleWithoutAProgramIsNotStarted) {
  scratch_.folder("P.app");
  EXPECT_FALSE(applications_.open(scratch_ / "P.app"));
  EXPECT_EQ(log_.lines().at(0), "could not start " + scratch_ / "P.app" + ": no executable");
}

TEST_F(DesktopApplications, AProgramOfAnotherSystemIsNotStarted) {
  scratch_.file("P.app/P", "\xCF\xFA\xED\xFE machine code");
  ::chmod((scratch_ / "P.app/P").c_str(), 0755);
  EXPECT_FALSE(applications_.open(scratch_ / "P.app"));
  EXPECT_EQ(log_.lines().at(0), "could not start " + scratch_ / "P.app/P" + ": Exec format error");
}

TEST_F(DesktopApplications, WhoeverOpensAgainHearsOnceWhyItFails) {
  scratch_.folder("P.app");
  for (int attempt = 0; attempt < 3; ++attempt) EXPECT_FALSE(applications_.open(scratch_ / "P.app"));
  applications_.openInBackground(scratch_ / "P.app");
  EXPECT_EQ(log_.lines().size(), 1U);
}

TEST_F(DesktopApplications, AStartedProgramIsNoChildOfTheCaller) {
  ASSERT_TRUE(applications_.open(bundle("P.app", "P", "")));
  EXPECT_EQ(::wait(nullptr), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST_F(DesktopApplications, ARegisteredApplicationHasADesktopEntry) {
  const std::string path =
      bundle("P.app", "P", "{ CFBundleIdentifier = \"com.example.p\"; CFBundleName = \"The P\"; }");
  EXPECT_EQ(applications_.registerApplication(path), 0);
  const std::string entry = kr::testing::readFile(scratch_ / "data/applications/com.example.p.desktop");
  EXPECT_NE(entry.find("Name=The P\n"), std::string::npos);
  EXPECT_NE(entry.find(path + "/P"), std::string::npos);
}

TEST_F(DesktopApplications, WhatIsNoApplicationIsNotRegistered) {
  EXPECT_EQ(applications_.registerApplication(scratch_.folder("Folder")), -10811);
  EXPECT_EQ(applications_.registerApplication(scratch_.folder("Empty.app")), -10811);
  EXPECT_EQ(applications_.registerApplication(scratch_ / "Missing.app"), -10811);
}

TEST_F(DesktopApplications, ADocumentThatIsMissingIsNotOpened) {
  EXPECT_FALSE(applications_.open(scratch_ / "missing.txt"));
}

TEST_F(DesktopApplications, ADocumentGoesToTheDefaultApplicationOfItsType) {
  ::setenv("XDG_CONFIG_HOME", (scratch_ / "config").c_str(), 1);
  const std::string viewer = scratch_.file(
      "viewer", "#!/bin/sh\nprintf %s \"$1\" > \"$HOME/part\"\nmv \"$HOME/part\" \"$HOME/started\"\n");
  ::chmod(viewer.c_str(), 0755);
  scratch_.file("data/applications/viewer.desktop",
                "[Desktop Entry]\nType=Application\nName=V\nMimeType=text/plain;\nExec=" + viewer + " %f\n");
  scratch_.file("config/mimeapps.list", "[Default Applications]\ntext/plain=viewer.desktop\n");
  const std::string document = scratch_.file("Read Me.txt", "plain words\n");
  applications_.openInBackground(document);
  EXPECT_EQ(started(), document);
}

}  // namespace
}  // namespace kr::platform
