#include "platform/Launcher.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/linux/LoginLaunch.h"
#include "tests/support/Child.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/TestApplication.h"

namespace kr::platform {
namespace {

using kr::testing::Child;
using kr::testing::ScratchFolder;

TEST(LoginLaunch, ReadsTheUnitOfAnAutostartEntry) {
  EXPECT_EQ(autostartUnit("0::/user.slice/user-1000.slice/user@1000.service/app.slice/"
                          "app-org.example.Mail@autostart.service\n"),
            "app-org.example.Mail@autostart.service");
  EXPECT_EQ(autostartUnit("12:cpu:/\n1:name=systemd:/x/app-a@autostart.service/sub\n0::/x\n"),
            "app-a@autostart.service");
}

TEST(LoginLaunch, ReadsNoUnitOfWhatWasStartedLater) {
  EXPECT_EQ(autostartUnit(""), std::nullopt);
  EXPECT_EQ(autostartUnit("0::/\n"), std::nullopt);
  EXPECT_EQ(autostartUnit("0::/app.slice/app-gnome-mail-4711.scope\n"), std::nullopt);
  EXPECT_EQ(autostartUnit("0::/app.slice/app-mail@4711.service\n"), std::nullopt);
  EXPECT_EQ(autostartUnit("0::/app.slice/app-mail@autostart.service.d\n"), std::nullopt);
  EXPECT_EQ(autostartUnit("0::/app.slice/my-app-mail@autostart.service\n"), std::nullopt);
}

TEST(LoginLaunch, KnowsSessionManagersAndShellsByName) {
  EXPECT_TRUE(startsLoginItems("xfce4-session"));
  EXPECT_TRUE(startsLoginItems("gnome-session-binary"));
  EXPECT_FALSE(startsLoginItems("xfce4-panel"));
  EXPECT_FALSE(startsLoginItems("lxqt-session"));
  EXPECT_FALSE(startsLoginItems(""));
  EXPECT_TRUE(isShell("dash"));
  EXPECT_TRUE(isShell("bash"));
  EXPECT_FALSE(isShell("xterm"));
  EXPECT_FALSE(isShell(""));
}

// The launch probe under parents of several kinds, each a copy of the shell.
class Launching : public ::testing::Test {
 protected:
  // A program that runs a line of the shell.
  std::string shellAs(const std::string& path) const {
    std::filesystem::copy_file(std::filesystem::canonical("/bin/sh"), path,
                               std::filesystem::copy_options::overwrite_existing);
    return path;
  }

  // What the probe tells when the program runs it in this line.
  std::string toldBelow(const std::string& program, const std::string& line = "\"$0\" > \"$1\"; true") const {
    const std::string output = folder / "output";
    Child child({program, "-c", line, KR_LAUNCH_PROBE, output});
    const auto status = child.wait(20.0);
    if (!status || *status != 0) return "failed";
    return kr::testing::readFile(output);
  }

  ScratchFolder folder;
};

TEST_F(Launching, ByASessionManagerIsThatOfALoginItem) {
  EXPECT_EQ(toldBelow(shellAs(folder / "xfce4-session")), "lgnw\n");
}

TEST_F(Launching, ByAShellIsTheDoingOfWhoHasStartedTheShell) {
  const std::string line = "/bin/sh -c '\"$0\" > \"$1\"; true' \"$0\" \"$1\"; true";
  EXPECT_EQ(toldBelow(shellAs(folder / "mate-session"), line), "lgnw\n");
  EXPECT_EQ(toldBelow(shellAs(folder / "xterm"), line), "none\n");
}

TEST_F(Launching, ByAnApplicationOfTheSessionManagerIsNotThatOfALoginItem) {
  const std::string panel = shellAs(folder / "panel");
  const std::string line = "\"" + panel + "\" -c '\"$0\" > \"$1\"; true' \"$0\" \"$1\"; true";
  EXPECT_EQ(toldBelow(shellAs(folder / "xfce4-session"), line), "none\n");
}

TEST_F(Launching, ByABundleIsToldByItsSignature) {
  const std::string executable = kr::testing::makeBundle(folder, "Parent.app", {.signature = "PaRe"});
  EXPECT_EQ(toldBelow(shellAs(executable)), "PaRe\n");
  const std::string other = kr::testing::makeBundle(folder, "Nameless.app");
  EXPECT_EQ(toldBelow(shellAs(other)), "????\n");
}

TEST_F(Launching, ByAnythingElseIsNotTold) {
  EXPECT_EQ(toldBelow(shellAs(folder / "plain")), "none\n");
}

}  // namespace
}  // namespace kr::platform
