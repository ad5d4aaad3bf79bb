#include "platform/LoginItems.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>

#include "platform/SystemServices.h"
#include "tests/support/ScratchFolder.h"

namespace kr::platform {
namespace {

using Lines = std::vector<std::string>;

// GLib reads the folders of the environment once, so each case (a process of its own) sets them first.
class LoginItemsOfTheDesktop : public ::testing::Test {
 protected:
  LoginItemsOfTheDesktop() {
    ::setenv("XDG_CONFIG_HOME", (scratch_ / "user").c_str(), 1);
    ::setenv("XDG_CONFIG_DIRS", (scratch_ / "machine").c_str(), 1);
  }

  std::string program(const std::string& name) {
    std::string path = scratch_.file(name, "#!/bin/sh\n");
    ::chmod(path.c_str(), 0755);
    return path;
  }

  void entry(const std::string& name, const std::string& exec, const std::string& more = "") {
    scratch_.file(name, "[Desktop Entry]\nType=Application\nName=x\nExec=" + exec + "\n" + more);
  }

  kr::testing::ScratchFolder scratch_;
};

TEST_F(LoginItemsOfTheDesktop, AnApplicationIsNamedByItsBundleAndTheUserComesFirst) {
  entry("machine/autostart/a.desktop", program("Machine.app/Machine"));
  entry("user/autostart/z.desktop", "\"" + program("My Notes.app/Contents/MacOS/Notes") + "\" %U");
  EXPECT_EQ(systemLoginItems().paths(), (Lines{scratch_ / "My Notes.app", scratch_ / "Machine.app"}));
}

TEST_F(LoginItemsOfTheDesktop, AProgramWithoutABundleIsNamedByItself) {
  entry("user/autostart/tool.desktop", program("bin/tool") + " --quiet");
  EXPECT_EQ(systemLoginItems().paths(), Lines{scratch_ / "bin/tool"});
}

TEST_F(LoginItemsOfTheDesktop, WhatIsSwitchedOffOrCannotBeResolvedIsSkipped) {
  entry("user/autostart/off.desktop", program("Off.app/Off"), "Hidden=true\n");
  entry("user/autostart/gone.desktop", scratch_ / "Gone.app/Gone");
  entry("user/autostart/odd.desktop", "\"unbalanced");
  scratch_.file("user/autostart/broken.desktop", "no entry at all");
  scratch_.file("user/autostart/readme.txt", "not an entry");
  EXPECT_EQ(systemLoginItems().paths(), Lines{});
}

TEST_F(LoginItemsOfTheDesktop, TheUsersEntryStandsInPlaceOfTheMachinesEntryOfThatName) {
  entry("machine/autostart/p.desktop", program("Machine.app/Machine"));
  entry("user/autostart/p.desktop", program("User.app/User"), "Hidden=true\n");
  EXPECT_EQ(systemLoginItems().paths(), Lines{});
}

TEST_F(LoginItemsOfTheDesktop, NoFoldersMeanNoItems) {
  EXPECT_EQ(systemLoginItems().paths(), Lines{});
}

}  // namespace
}  // namespace kr::platform
