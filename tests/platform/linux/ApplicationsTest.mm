#include "platform/Applications.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "platform/Clock.h"
#include "platform/Log.h"
#include "platform/Services.h"
#include "platform/SystemServices.h"
#include "platform/posix/Files.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/Child.h"
#include "tests/support/Desktop.h"
#include "tests/support/Eventually.h"
#include "tests/support/Forked.h"
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

TEST_F(DesktopApplications, ABundleIsStartedInTheBackgroundToo) {
  applications_.openInBackground(bundle("P.app", "P", ""));
  EXPECT_NE(started(), "(not started)");
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
  const auto hasNoChild = [] {
    siginfo_t child{};
    return ::waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT) == -1 && errno == ECHILD;
  };
  EXPECT_TRUE(kr::testing::eventually(hasNoChild)) << "it is no child of the caller";
}

class AddressHandler : public DesktopApplications {
 protected:
  AddressHandler() {
    ::setenv("XDG_CONFIG_HOME", (scratch_ / "config").c_str(), 1);
    ::setenv("XDG_DATA_DIRS", (scratch_ / "none").c_str(), 1);
  }

  // Becomes the user's choice for web pages.
  void install(const std::string& identifier, const std::string& more) {
    scratch_.file(
        "data/applications/" + identifier + ".desktop",
        "[Desktop Entry]\nType=Application\nName=Browser\nMimeType=x-scheme-handler/https;\n" + more);
    scratch_.file("config/mimeapps.list",
                  "[Default Applications]\nx-scheme-handler/https=" + identifier + ".desktop\n");
  }

  static constexpr const char* kAddress = "https://www.example.com/a%20page/?q=1&r=$HOME#top";
};

TEST_F(AddressHandler, GetsTheAddressAsItIs) {
  const std::string browser = scratch_.file(
      "browser", "#!/bin/sh\nprintf '%s|' \"$@\" > \"$HOME/part\"\nmv \"$HOME/part\" \"$HOME/started\"\n");
  ::chmod(browser.c_str(), 0755);
  install("browser", "Exec=" + browser + " %u\n");
  EXPECT_TRUE(applications_.openAddress(kAddress));
  EXPECT_EQ(started(), std::string(kAddress) + "|");
  EXPECT_EQ(log_.lines().size(), 0U);
}

TEST_F(AddressHandler, MayBeMissing) {
  EXPECT_FALSE(applications_.openAddress(kAddress));
  EXPECT_FALSE(applications_.openAddress("no address"));
  EXPECT_EQ(log_.lines(),
            (std::vector<std::string>{"could not open " + std::string(kAddress) + ": no application for it",
                                      "could not open no address: no application for it"}));
}

TEST_F(AddressHandler, ThatCannotBeStartedIsLoggedWithTheReason) {
  install("browser", "Exec=" + scratch_ / "missing %u\n");
  EXPECT_FALSE(applications_.openAddress(kAddress));
  ASSERT_EQ(log_.lines().size(), 1U);
  EXPECT_TRUE(log_.lines()[0].starts_with("could not open " + std::string(kAddress) + ": "));
}

// Hears what applications that are called by message are told.
class Calls {
 public:
  explicit Calls(const kr::testing::ScratchFolder& folder) : seen_(folder / "seen") {
    const std::string watch = folder.file(
        "watch",
        "#!/bin/sh\nexec dbus-monitor --session \"interface='org.freedesktop.Application'\" > \"$1\"\n");
    ::chmod(watch.c_str(), 0755);
    monitor_ = kr::testing::Child({watch, seen_});
    EXPECT_TRUE(kr::testing::eventually([&] { return text().find("NameAcquired") != std::string::npos; }));
  }

  int about(const std::string& address) const {
    const std::string all = text();
    int found = 0;
    for (std::size_t at = all.find(address); at != std::string::npos; at = all.find(address, at + 1)) ++found;
    return found;
  }

 private:
  std::string text() const { return files::contents(seen_).value_or(""); }

  std::string seen_;
  kr::testing::Child monitor_;
};

// The last thing that a program does may be to open an address.
TEST_F(AddressHandler, ThatIsCalledByMessageHearsOfItFromAProgramThatEnds) {
  install("org.example.Browser", "Exec=/bin/false %u\nDBusActivatable=true\n");
  const kr::testing::Desktop desktop({.display = false, .bus = true});
  const Calls calls(scratch_);
  constexpr int kTimes = 10;
  for (int i = 0; i < kTimes; ++i) {
    const int status =
        kr::testing::inChild([&] { return systemApplications().openAddress(kAddress) ? 0 : 1; });
    EXPECT_EQ(status, 0);
  }
  EXPECT_TRUE(kr::testing::eventually([&] { return calls.about(kAddress) == kTimes; }, 5))
      << calls.about(kAddress);
}

class DocumentViewerCalledByMessage : public DesktopApplications {
 protected:
  DocumentViewerCalledByMessage() {
    ::setenv("XDG_CONFIG_HOME", (scratch_ / "config").c_str(), 1);
    scratch_.file("data/applications/org.example.Viewer.desktop",
                  "[Desktop Entry]\nType=Application\nName=V\nMimeType=text/plain;\nExec=/bin/false %f\n"
                  "DBusActivatable=true\n");
    scratch_.file("config/mimeapps.list", "[Default Applications]\ntext/plain=org.example.Viewer.desktop\n");
  }

  // The wait status of a program that opens the document and ends; one that hangs is killed by a signal.
  int openInProgram() {
    return kr::testing::inChild([&] {
      ::alarm(20);
      systemApplications().openInBackground(document_);
      std::exit(0);
      return 1;
    });
  }

  std::string document_ = scratch_.file("Manual.txt", "plain words\n");
  kr::testing::Desktop desktop_{{.display = false, .bus = true}};
};

TEST_F(DocumentViewerCalledByMessage, HearsOfItInTheBackgroundFromAProgramThatEnds) {
  const Calls calls(scratch_);
  constexpr int kTimes = 10;
  for (int i = 0; i < kTimes; ++i) EXPECT_EQ(openInProgram(), 0);
  EXPECT_TRUE(kr::testing::eventually([&] { return calls.about("Manual.txt") == kTimes; }, 5))
      << calls.about("Manual.txt");
}

TEST_F(DocumentViewerCalledByMessage, KeepsNobodyWaitingOnABusThatDoesNotAnswer) {
  desktop_.signalBus(SIGSTOP);
  EXPECT_EQ(openInProgram(), 0);
  desktop_.signalBus(SIGCONT);
}

}  // namespace
}  // namespace kr::platform
