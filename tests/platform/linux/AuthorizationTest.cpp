// Administrator rights as an ordinary user gets them from the real polkit.
#include "platform/Authorization.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <utility>
#include <vector>

#include "platform/posix/Files.h"
#include "tests/support/Child.h"
#include "tests/support/Eventually.h"
#include "tests/support/PolkitAgent.h"
#include "tests/support/PolkitServer.h"

namespace kr::platform {
namespace {

using kr::testing::Child;
using kr::testing::PolkitAgent;
using kr::testing::PolkitServer;
using Asked = std::vector<std::string>;

constexpr const char* kAllow = "polkit.addRule(function() { return polkit.Result.YES; });";
constexpr const char* kRefuse = "polkit.addRule(function() { return polkit.Result.NO; });";
constexpr const char* kAsk = "";  // what the action says
constexpr const char* kAskEachTime = "polkit.addRule(function() { return polkit.Result.AUTH_ADMIN; });";

constexpr const char* kOwnQuestion =
    "com.velmora.installer.copy: Authentication is needed to install an application for all users";

class AuthorizationTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can start polkit's authority";
    ::chmod(scratch_.path().c_str(), 0755);
    std::filesystem::copy_file(KR_AUTHORIZED_CALLER, scratch_ / "caller");
    tool("exit 0");
  }

  // The tool of a bundle of the test's own.
  void tool(const std::string& body) {
    tool_ = scratch_.file("Installer & Co.app/Contents/Resources/train", "#!/bin/sh\n" + body + "\n");
    ::chmod(tool_.c_str(), 0755);
  }

  // Makes the bundle known as its administrator does; whether that was accepted.
  bool registerInstaller() {
    const std::string command =
        KR_TOOLS_FOLDER "/register-policy '" + bundle_ + "' '" + scratch_.path() + "'";
    return std::system(command.c_str()) == 0;
  }

  void startPolkit(const std::string& rules, bool registered = true) {
    if (registered) ASSERT_TRUE(registerInstaller());
    polkit_.emplace(rules, registered ? policy_ : "");
  }

  // Starts the caller as an ordinary user; it asks for rights once it is told to go.
  void startCaller(const std::vector<std::string>& arguments = {}, const std::string& setting = "true") {
    ::chmod(scratch_.folder("out").c_str(), 0777);
    // The shell becomes the caller, which has the process ID that the agent answers for.
    std::vector<std::string> words{"setpriv",
                                   "--reuid",
                                   "nobody",
                                   "--regid",
                                   "nogroup",
                                   "--clear-groups",
                                   "sh",
                                   "-c",
                                   setting + " && cd \"$0/out\" && exec ../caller ../go \"$@\" >answer 2>log",
                                   scratch_.path(),
                                   tool_};
    words.insert(words.end(), arguments.begin(), arguments.end());
    caller_.emplace(words);
  }

  // Lets the caller go and takes its answer.
  std::string answer() {
    scratch_.file("go");
    EXPECT_TRUE(caller_->wait(20)) << "the caller hangs";
    std::string text = files::contents(scratch_ / "out/answer").value_or("");
    if (text.ends_with('\n')) text.pop_back();
    return text;
  }

  [[nodiscard]] bool logHas(const std::string& text) const {
    return files::contents(scratch_ / "out/log").value_or("").find(text) != std::string::npos;
  }

  std::string answer(const std::vector<std::string>& arguments) {
    startCaller(arguments);
    return answer();
  }

  std::string answerWithAgent(PolkitAgent::User user) {
    startCaller();
    agent_.emplace(caller_->pid(), user);
    return answer();
  }

  kr::testing::ScratchFolder scratch_;
  const std::string bundle_ = scratch_ / "Installer & Co.app";
  const std::string policy_ = scratch_ / "com.velmora.installer.policy";
  std::string tool_;
  std::optional<PolkitServer> polkit_;
  std::optional<Child> caller_;
  std::optional<PolkitAgent> agent_;
};

TEST_F(AuthorizationTest, AToolThatARuleAllowsRunsAsRootWithItsArguments) {
  tool("test $(id -u) -eq 0 || exit 9; printf '[%s]' \"$@\" > '" + scratch_ / "arguments" + "'");
  startPolkit(kAllow);
  EXPECT_EQ(answer({"/disk/Two  words.app", "--help", "\xFF*\n"}), "right 0, tool 0, status 0");
  EXPECT_EQ(kr::testing::readFile(scratch_ / "arguments"), "[/disk/Two  words.app][--help][\xFF*\n]");
}

TEST_F(AuthorizationTest, TheToolsEndIsTheCallersToWaitFor) {
  startPolkit(kAllow);
  for (const std::string status : {"1", "126", "127"}) {
    tool("exit " + status);
    EXPECT_EQ(answer(Asked{}), "right 0, tool 0, status " + status);
  }
  tool("kill -KILL $$");
  EXPECT_EQ(answer(Asked{}), "right 0, tool 0, signal 9");
}

TEST_F(AuthorizationTest, ARefusalOfTheAdministratorIsNoCancellation) {
  startPolkit(kRefuse);
  EXPECT_EQ(answer(Asked{}), "right -60005");
  EXPECT_TRUE(logHas("not authorized for com.velmora.installer.copy"));
}

TEST_F(AuthorizationTest, WithoutAnAgentNobodyIsAsked) {
  startPolkit(kAsk);
  EXPECT_EQ(answer(Asked{}), "right -60007");
  EXPECT_TRUE(logHas("no agent to ask for com.velmora.installer.copy"));
}

TEST_F(AuthorizationTest, AUserWhoConfirmsIsAskedOnce) {
  startPolkit(kAsk);
  EXPECT_EQ(answerWithAgent(PolkitAgent::User::confirms), "right 0, tool 0, status 0");
  EXPECT_EQ(agent_->asked(), Asked{kOwnQuestion});
}

TEST_F(AuthorizationTest, AUserIsAskedInTheUsersLanguage) {
  startPolkit(kAsk);
  const std::string action = "com.velmora.installer.copy: ";
  for (const auto& [locale, message] :
       {std::pair{"de_AT.UTF-8", "Zum Installieren eines Programms für alle Benutzer"},
        std::pair{"pt_BR.UTF-8", "É necessária autenticação"}, std::pair{"zh_CN.UTF-8", "为所有用户安装"},
        std::pair{"fi_FI.UTF-8", "Authentication is needed"}}) {
    std::filesystem::remove(scratch_ / "go");
    startCaller();
    agent_.emplace(caller_->pid(), PolkitAgent::User::dismisses, locale);
    EXPECT_EQ(answer(), "right -60006");
    ASSERT_EQ(agent_->asked().size(), 1U) << locale;
    EXPECT_TRUE(agent_->asked().front().starts_with(action + message)) << agent_->asked().front();
    agent_.reset();
  }
}

TEST_F(AuthorizationTest, AUserWhoDismissesTheDialogCancels) {
  startPolkit(kAsk);
  EXPECT_EQ(answerWithAgent(PolkitAgent::User::dismisses), "right -60006");
  EXPECT_EQ(agent_->asked(), Asked{kOwnQuestion});
}

TEST_F(AuthorizationTest, AUserWhoCannotAuthenticateIsRefused) {
  startPolkit(kAsk);
  EXPECT_EQ(answerWithAgent(PolkitAgent::User::fails), "right -60005");
}

// Whoever is asked each time is asked when the tool starts, and once.
TEST_F(AuthorizationTest, APermissionThatIsNotKeptIsAskedForAtTheToolsStart) {
  startPolkit(kAskEachTime);
  EXPECT_EQ(answerWithAgent(PolkitAgent::User::confirms), "right 0, tool 0, status 0");
  EXPECT_EQ(agent_->asked(), Asked{kOwnQuestion});
}

TEST_F(AuthorizationTest, ADialogAtTheToolsStartTellsCancellationsAndRefusalsApart) {
  tool("touch '" + scratch_ / "ran" + "'");
  startPolkit(kAskEachTime);
  EXPECT_EQ(answerWithAgent(PolkitAgent::User::dismisses), "right 0, tool -60006");
  EXPECT_EQ(answerWithAgent(PolkitAgent::User::fails), "right 0, tool -60005");
  agent_.reset();
  EXPECT_EQ(answer(Asked{}), "right 0, tool -60005") << "no agent";
  EXPECT_FALSE(files::exists(scratch_ / "ran"));
}

TEST_F(AuthorizationTest, AnInstallerThatIsNotRegisteredAsksForTheGeneralAction) {
  startPolkit(kAsk, false);
  EXPECT_EQ(answerWithAgent(PolkitAgent::User::confirms), "right 0, tool 0, status 0");
  ASSERT_EQ(agent_->asked().size(), 1U);
  EXPECT_TRUE(agent_->asked().front().starts_with("org.freedesktop.policykit.exec: "))
      << agent_->asked().front();
  EXPECT_NE(agent_->asked().front().find(tool_), std::string::npos) << "the dialog names the tool";
  EXPECT_EQ(answerWithAgent(PolkitAgent::User::dismisses), "right 0, tool -60006");
}

TEST_F(AuthorizationTest, AToolBehindALinkIsTheRegisteredOne) {
  startPolkit(kAsk);
  std::filesystem::create_directory_symlink("Contents/Resources", bundle_ + "/Resources");
  tool_ = bundle_ + "/Resources/train";
  EXPECT_EQ(answerWithAgent(PolkitAgent::User::confirms), "right 0, tool 0, status 0");
  EXPECT_EQ(agent_->asked(), Asked{kOwnQuestion});
  EXPECT_EQ(answerWithAgent(PolkitAgent::User::dismisses), "right -60006")
      << "asked for before the tool starts";
}

TEST_F(AuthorizationTest, AnInstallerThatOthersMayChangeIsNotRegistered) {
  ::chmod((bundle_ + "/Contents").c_str(), 0775);
  EXPECT_FALSE(registerInstaller());
  ::chmod((bundle_ + "/Contents").c_str(), 0755);
  EXPECT_EQ(::chown(tool_.c_str(), 65534, 65534), 0);
  EXPECT_FALSE(registerInstaller());
  EXPECT_FALSE(files::exists(policy_));
  EXPECT_EQ(::chown(tool_.c_str(), 0, 0), 0);
  EXPECT_TRUE(registerInstaller());
}

TEST_F(AuthorizationTest, AMissingToolIsNotStarted) {
  startPolkit(kAllow, false);
  std::filesystem::remove(tool_);
  EXPECT_EQ(answer(Asked{}), "right 0, tool -60005");
}

TEST_F(AuthorizationTest, WhatTheCallersShellIsDoesNotMatter) {
  startPolkit(kAllow);
  startCaller({}, "export SHELL=/no/shell LANG=../x");
  EXPECT_EQ(answer(), "right 0, tool 0, status 0");
}

TEST_F(AuthorizationTest, WithoutAnAuthorityThereIsNoReference) {
  startPolkit(kAllow);
  polkit_->stopAuthority();
  EXPECT_EQ(answer(Asked{}), "no reference");
  EXPECT_TRUE(logHas("could not ask for administrator rights: ")) << "and why";
}

TEST_F(AuthorizationTest, WithoutABusThereIsNoReference) {
  startPolkit(kAllow);
  polkit_->stopBus();
  EXPECT_EQ(answer(Asked{}), "no reference");
  EXPECT_TRUE(logHas("could not ask for administrator rights: no system bus"));
}

TEST_F(AuthorizationTest, AnAuthorityThatEndsBehindTheDialogIsARefusal) {
  startPolkit(kAsk);
  startCaller();
  agent_.emplace(caller_->pid(), PolkitAgent::User::hesitates);
  scratch_.file("go");
  ASSERT_TRUE(kr::testing::eventually([&] { return !agent_->asked().empty(); }));
  polkit_->stopAuthority();
  EXPECT_EQ(answer(), "right -60005");
}

}  // namespace
}  // namespace kr::platform
