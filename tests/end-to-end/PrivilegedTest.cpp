// Installations with administrator rights: an ordinary user, the real polkit with an agent that answers for
// the user, and a folder that only root may write.
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "platform/posix/Files.h"
#include "tests/end-to-end/Installation.h"
#include "tests/end-to-end/Products.h"
#include "tests/support/Eventually.h"
#include "tests/support/PolkitAgent.h"
#include "tests/support/PolkitServer.h"

namespace kr::testing {
namespace {

constexpr const char* kAllow = "polkit.addRule(function() { return polkit.Result.YES; });";
constexpr const char* kRefuse = "polkit.addRule(function() { return polkit.Result.NO; });";
constexpr const char* kAsk = "";  // what the action says
constexpr const char* kError = "ERROR -- Could not copy myself to /Applications with authorization";

constexpr uid_t kUser = 65534;

class PrivilegedInstallation : public Installation {
 protected:
  void SetUp() override {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can start polkit's authority";
    ::chmod(scratch_.path().c_str(), 0755);
    ASSERT_EQ(::chown(home_.c_str(), kUser, kUser), 0);
    std::filesystem::copy(
        std::filesystem::path(installerProgram()).parent_path(), bundle_,
        std::filesystem::copy_options::recursive | std::filesystem::copy_options::copy_symlinks);
  }

  // A tool in place of that of the bundle.
  void tool(const std::string& body) {
    std::filesystem::remove(tool_);
    scratch_.file("disk/VelmoraInstaller.app/Contents/Resources/train", "#!/bin/sh\n" + body + "\n");
    ::chmod(tool_.c_str(), 0755);
  }

  void startPolkit(const std::string& rules) {
    const std::string command =
        KR_TOOLS_FOLDER "/register-policy '" + bundle_ + "' '" + scratch_.path() + "'";
    ASSERT_EQ(std::system(command.c_str()), 0);
    polkit_.emplace(rules, scratch_ / "com.velmora.installer.policy");
  }

  // Starts the installer as the ordinary user, with an agent for it where there is to be one.
  void startAsUser(std::optional<PolkitAgent::User> agent, const Lines& more = {}) {
    Lines words{"--reuid",     "nobody",          "--regid",
                "nogroup",     "--clear-groups",  "env",
                "-u",          "XDG_RUNTIME_DIR", bundle_ + "/VelmoraInstaller",
                "-sourcePath", source_,           "-destinationPath",
                destination_};
    words.insert(words.end(), more.begin(), more.end());
    start(words, "setpriv");
    if (agent) agent_.emplace(installer(), *agent);
  }

  void installAsUser(std::optional<PolkitAgent::User> agent, const Lines& more = {}) {
    startAsUser(agent, more);
    pressInstall();
  }

  // The log from the last click on Install to a line.
  Lines logUntil(const std::string& line) {
    expectLine(line);
    const Lines lines = log();
    const auto first = std::find(lines.rbegin(), lines.rend(), "Install");
    const auto last = std::find(lines.begin(), lines.end(), line);
    if (last == lines.end()) return lines;
    return {first == lines.rend() ? lines.begin() : first.base() - 1, last + 1};
  }

  [[nodiscard]] Lines fromInstallTo(const Lines& lines) const {
    Lines all{"Install", "Cannot write to folder " + applications_};
    all.insert(all.end(), lines.begin(), lines.end());
    return all;
  }

  const std::string applications_ = scratch_.folder("Applications");
  const std::string source_ = smallApplication(scratch_ / "disk/Small.app");
  const std::string destination_ = applications_ + "/Small.app";
  const std::string bundle_ = scratch_ / "disk/VelmoraInstaller.app";
  const std::string tool_ = bundle_ + "/Contents/Resources/train";
  std::optional<PolkitServer> polkit_;
  std::optional<PolkitAgent> agent_;
};

TEST_F(PrivilegedInstallation, AUserWhoConfirmsReplacesAProductInAFolderOfRoot) {
  startPolkit(kAsk);
  smallApplication(destination_);
  scratch_.file("Applications/Small.app/old");
  installAsUser(PolkitAgent::User::confirms);
  EXPECT_EQ(logUntil("launched immediately: 1"),
            (Lines{"Install", "Cannot write to item " + destination_, "successfully copied",
                   "launching " + destination_, "waited 0.5", "registered app: 0", "waited 0.3",
                   "launched immediately: 1"}));
  EXPECT_EQ(
      agent_->asked(),
      Lines{"com.velmora.installer.copy: Authentication is needed to install an application for all users"});
  expectSameTree(source_, destination_);
  struct stat status {};
  ASSERT_EQ(::stat(destination_.c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 0U);
  EXPECT_TRUE(eventually([&] { return !processesIn(destination_).empty(); }));
  for (const pid_t product : processesIn(destination_)) {
    ASSERT_EQ(::stat(("/proc/" + std::to_string(product)).c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, kUser) << "the product is started by the user";
  }
  expectQuitsOnOK();
}

TEST_F(PrivilegedInstallation, AWrapperIsPlacedAroundTheProduct) {
  startPolkit(kAllow);
  scratch_.file("disk/Small Folder/Licence.txt", "licence");
  installAsUser(std::nullopt, {"-wrapperPath", scratch_ / "disk/Small Folder"});
  expectInstalled(applications_ + "/Small Folder/Small.app");
  EXPECT_EQ(readFile(applications_ + "/Small Folder/Licence.txt"), "licence");
}

TEST_F(PrivilegedInstallation, WhyTheToolFailsStandsInTheLog) {
  startPolkit(kAllow);
  ASSERT_EQ(::mkfifo((source_ + "/Contents/fifo").c_str(), 0600), 0);
  installAsUser(std::nullopt);
  expectLine("train: ");
  expectLine("WEXITSTATUS");
  expectFailed(kError);
  EXPECT_EQ(files::entries(applications_), Lines{});
}

TEST_F(PrivilegedInstallation, ADismissedDialogChangesNothingAndInstallMayBePressedAgain) {
  tool("touch \"$2\"");
  startPolkit(kAsk);
  installAsUser(PolkitAgent::User::dismisses);
  EXPECT_EQ(logUntil("User canceled authorization"), fromInstallTo({"User canceled authorization"}));
  EXPECT_FALSE(files::itemExists(destination_));
  EXPECT_TRUE(eventually(
      [&] {
        press("Return");
        return agent_->asked().size() >= 2;  // a second press may come before the first has shown
      },
      30));
  EXPECT_FALSE(logHas(kError));
}

TEST_F(PrivilegedInstallation, ARuleThatRefusesIsAFailure) {
  tool("touch \"$2\"");
  startPolkit(kRefuse);
  installAsUser(std::nullopt);
  EXPECT_EQ(logUntil(kError), fromInstallTo({"not authorized for com.velmora.installer.copy", kError}));
  EXPECT_FALSE(files::itemExists(destination_));
}

TEST_F(PrivilegedInstallation, WithoutAnAgentItIsAFailure) {
  tool("touch \"$2\"");
  startPolkit(kAsk);
  installAsUser(std::nullopt);
  EXPECT_EQ(logUntil(kError), fromInstallTo({"no agent to ask for com.velmora.installer.copy", kError}));
}

// The toolkit has a handler of its own for the end of children, which the tool's status must not be lost to.
TEST_F(PrivilegedInstallation, AToolThatFailsIsAFailure) {
  tool("exit 1");
  startPolkit(kAllow);
  installAsUser(std::nullopt);
  EXPECT_EQ(logUntil(kError), fromInstallTo({"WEXITSTATUS", kError}));
}

TEST_F(PrivilegedInstallation, AToolThatIsKilledIsAFailure) {
  tool("kill -KILL $$");
  startPolkit(kAllow);
  installAsUser(std::nullopt);
  EXPECT_EQ(logUntil(kError), fromInstallTo({"!WIFEXITED", kError}));
}

TEST_F(PrivilegedInstallation, AToolThatCannotRunIsAFailure) {
  tool("exit 0");
  startPolkit(kAllow);
  ::chmod(tool_.c_str(), 0644);
  installAsUser(std::nullopt);
  expectLine(kError);
  EXPECT_TRUE(logHas("AuthorizationExecuteWithPrivileges failed (" + bundle_ + "/Resources/train)"));
}

TEST_F(PrivilegedInstallation, TheWrapperIsTheToolsThirdArgument) {
  tool("printf '[%s]' \"$@\" >'" + scratch_ / "arguments" + "'");
  startPolkit(kAllow);
  scratch_.file("disk/Small Folder/Licence.txt");
  installAsUser(std::nullopt, {"-wrapperPath", scratch_ / "disk/Small Folder"});
  expectLine("successfully copied");
  EXPECT_EQ(
      readFile(scratch_ / "arguments"),
      "[" + source_ + "][" + applications_ + "/Small Folder/Small.app][" + scratch_ / "disk/Small Folder]");
}

TEST_F(PrivilegedInstallation, OptionOnInstallHasTheToolCopyWhereTheUserMayWriteToo) {
  ASSERT_EQ(::chown(applications_.c_str(), kUser, kUser), 0);
  startPolkit(kAllow);
  startAsUser(std::nullopt);
  expectLine("Updated arguments: ");
  click(kInstallX, kInstallY, "Alt_L");
  EXPECT_EQ(logUntil("successfully copied"),
            (Lines{"Install", "enforcing authorization", "successfully copied"}));
}

// There is nobody to give the rights.
TEST_F(Installation, OptionOnInstallEnforcesAuthorization) {
  const std::string destination = scratch_.folder("Applications") + "/Small.app";
  start({"-sourcePath", smallApplication(scratch_ / "Small.app"), "-destinationPath", destination});
  expectLine("Updated arguments: ");
  click(kInstallX, kInstallY, "Alt_L");
  expectFailed(kError);
  EXPECT_TRUE(logHas("enforcing authorization"));
  EXPECT_TRUE(logHas("could not ask for administrator rights: no system bus"));
  EXPECT_FALSE(files::itemExists(destination));
}

}  // namespace
}  // namespace kr::testing
