// What is asked of polkit's authority, and what its answers mean. The authority is one of the test's own.
#include "platform/linux/PolkitAuthority.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <mutex>
#include <vector>

#include "platform/Authorization.h"
#include "platform/Services.h"
#include "platform/SystemServices.h"
#include "platform/linux/ProcFS.h"
#include "platform/testing/RecordingLog.h"
#include "tests/support/BusObject.h"
#include "tests/support/Desktop.h"

namespace kr::platform {
namespace {

using kr::testing::BusObject;
using kr::testing::Desktop;
using kr::testing::ScopedVariable;
using Lines = std::vector<std::string>;

constexpr const char* kInterface =
    "<interface name='org.freedesktop.PolicyKit1.Authority'>"
    "<method name='EnumerateActions'><arg type='s' direction='in'/><arg type='a(ssssssuuua{ss})' "
    "direction='out'/></method>"
    "<method name='CheckAuthorization'><arg type='(sa{sv})' direction='in'/><arg type='s' direction='in'/>"
    "<arg type='a{ss}' direction='in'/><arg type='u' direction='in'/><arg type='s' direction='in'/>"
    "<arg type='(bba{ss})' direction='out'/></method></interface>";

// Answers, in the notation of GLib's values; an empty one is an error.
constexpr const char* kAllowed = "((true, false, @a{ss} {}),)";
constexpr const char* kRefused = "((false, false, @a{ss} {}),)";
constexpr const char* kAsks = "((false, true, {'polkit.retains_authorization_after_challenge': '1'}),)";
constexpr const char* kAsksEachTime = "((false, true, {'polkit.something': '1'}),)";
constexpr const char* kDismissed = "((false, false, {'polkit.dismissed': 'true'}),)";

constexpr const char* kActions =
    "([('a.first', '', '', '', '', '', uint32 0, uint32 0, uint32 0, {'org.freedesktop.policykit.exec.path': "
    "'/tool',"
    " 'org.freedesktop.policykit.exec.argv1': 'x'}),"
    "('a.second', '', '', '', '', '', uint32 0, uint32 0, uint32 0, {'other': '/tool'}),"
    "('a.third', '', '', '', '', '', uint32 0, uint32 0, uint32 0, {'org.freedesktop.policykit.exec.path': "
    "'/tool'})],)";

class PolkitAuthorityTest : public ::testing::Test {
 protected:
  PolkitAuthorityTest() {
    Services set = services();
    set.log = &log_;
    scope_.emplace(set);
  }

  // The authority on the bus; answers questions in this order.
  void serve(const Lines& answers) {
    answers_ = answers;
    authority_.emplace(
        desktop_.busAddress(), "org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority",
        kInterface, [this](const std::string& method, GVariant* arguments, GDBusMethodInvocation* call) {
          const std::lock_guard lock(mutex_);
          const kr::glib::String text(::g_variant_print(arguments, FALSE));
          questions_.push_back(method + text.get());
          const std::string answer = method == "EnumerateActions" ? actions_ : next();
          if (answer.empty()) {
            ::g_dbus_method_invocation_return_dbus_error(call, "org.test.Error", "out of order");
          } else {
            ::g_dbus_method_invocation_return_value(call, ::g_variant_new_parsed(answer.c_str()));
          }
        });
  }

  // The subject and the action of a question, as they are printed.
  static std::string question(const std::string& action, int flags) {
    const pid_t pid = ::getpid();
    return "CheckAuthorization(('unix-process', {'pid': <uint32 " + std::to_string(pid) +
           ">, 'start-time': <uint64 " + std::to_string(procfs::status(pid)->startTicks) + ">, 'uid': <" +
           std::to_string(::getuid()) + ">}), '" + action + "', {}, " + std::to_string(flags) + ", '')";
  }

  std::string next() {
    const std::string answer = answers_.empty() ? "" : answers_.front();
    if (!answers_.empty()) answers_.erase(answers_.begin());
    return answer;
  }

  AuthorizationStatus obtain(const Lines& answers, std::uint32_t flags = 19) {
    serve(answers);
    const auto reference = systemAuthorization().create("/tool");
    return reference ? reference->obtainRight("system.privilege.admin", flags) : 1;
  }

  Lines questions() {
    const std::lock_guard lock(mutex_);
    return questions_;
  }

  testing::RecordingLog log_;
  Desktop desktop_{{.display = false, .bus = true}};
  ScopedVariable systemBus_{"DBUS_SYSTEM_BUS_ADDRESS", desktop_.busAddress()};
  std::string actions_ = kActions;

 private:
  std::mutex mutex_;
  Lines questions_;
  Lines answers_;
  std::optional<ScopedServices> scope_;
  std::optional<BusObject> authority_;
};

TEST_F(PolkitAuthorityTest, TheActionIsTheOneOfTheProgramElseTheGeneralOne) {
  serve({});
  const auto authority = PolkitAuthority::connect();
  ASSERT_TRUE(authority);
  EXPECT_EQ(authority->actionForProgram("/tool"), "a.third");
  EXPECT_EQ(authority->actionForProgram("/other"), "org.freedesktop.policykit.exec");
  EXPECT_EQ(questions(), Lines(2, "EnumerateActions('',)"));
}

TEST_F(PolkitAuthorityTest, ThisProcessIsWhatIsAskedAbout) {
  serve({kAllowed, kAllowed});
  const auto authority = PolkitAuthority::connect();
  ASSERT_TRUE(authority);
  EXPECT_TRUE(authority->check("a.third", false)->allowed);
  EXPECT_TRUE(authority->check("a.third", true)->allowed);
  EXPECT_EQ(questions(), (Lines{question("a.third", 0), question("a.third", 1)}));
}

TEST_F(PolkitAuthorityTest, EachPartOfAnAnswerIsRead) {
  serve({kRefused, kAsks, kAsksEachTime, kDismissed});
  const auto authority = PolkitAuthority::connect();
  ASSERT_TRUE(authority);
  const auto parts = [&] {
    const auto decision = authority->check("a", true).value();
    return std::vector<bool>{decision.allowed, decision.mayAsk, decision.keeps, decision.dismissed};
  };
  EXPECT_EQ(parts(), (std::vector<bool>{false, false, false, false}));
  EXPECT_EQ(parts(), (std::vector<bool>{false, true, true, false}));
  EXPECT_EQ(parts(), (std::vector<bool>{false, true, false, false}));
  EXPECT_EQ(parts(), (std::vector<bool>{false, false, false, true}));
}

TEST_F(PolkitAuthorityTest, AnErrorIsNoAnswerAndLogged) {
  serve({""});
  const auto authority = PolkitAuthority::connect();
  ASSERT_TRUE(authority);
  EXPECT_FALSE(authority->check("a", true));
  EXPECT_NE(log_.lines().at(0).find("could not ask for administrator rights: "), std::string::npos);
  EXPECT_NE(log_.lines().at(0).find("out of order"), std::string::npos);
}

TEST_F(PolkitAuthorityTest, WithoutAnAuthorityThereIsNoReference) {
  EXPECT_FALSE(systemAuthorization().create("/tool"));
  EXPECT_EQ(log_.lines().size(), 1U);
}

TEST_F(PolkitAuthorityTest, WithoutABusThereIsNoReference) {
  desktop_.stopBus();
  EXPECT_FALSE(systemAuthorization().create("/tool"));
  EXPECT_EQ(log_.lines(), Lines{"could not ask for administrator rights: no system bus"});
}

TEST_F(PolkitAuthorityTest, WhatIsAllowedIsNotAskedForTwice) {
  EXPECT_EQ(obtain({kAllowed}), kAuthorized);
  EXPECT_EQ(questions(), (Lines{"EnumerateActions('',)", question("a.third", 0)}));
}

TEST_F(PolkitAuthorityTest, TheUserIsAskedForWhatIsKept) {
  EXPECT_EQ(obtain({kAsks, kAllowed}), kAuthorized);
  EXPECT_EQ(questions().back(), question("a.third", 1));
}

TEST_F(PolkitAuthorityTest, WhatIsNotKeptIsLeftToTheToolsStart) {
  EXPECT_EQ(obtain({kAsksEachTime}), kAuthorized);
  EXPECT_EQ(questions().size(), 2U);
}

TEST_F(PolkitAuthorityTest, ADismissedDialogIsACancellation) {
  EXPECT_EQ(obtain({kAsks, kDismissed}), kAuthorizationCanceled);
  EXPECT_EQ(log_.lines(), Lines{});
}

TEST_F(PolkitAuthorityTest, ARefusalIsLogged) {
  EXPECT_EQ(obtain({kRefused}), kAuthorizationDenied);
  EXPECT_EQ(log_.lines(), Lines{"not authorized for a.third"});
}

TEST_F(PolkitAuthorityTest, WithoutAnAgentTheAnswerIsToAskAgain) {
  EXPECT_EQ(obtain({kAsks, kAsks}), kAuthorizationWithoutInteraction);
  EXPECT_EQ(log_.lines(), Lines{"no agent to ask for a.third"});
}

TEST_F(PolkitAuthorityTest, NobodyIsAskedWithoutTheFlagForIt) {
  EXPECT_EQ(obtain({kAsks, kAllowed}, 18), kAuthorizationWithoutInteraction);
  EXPECT_EQ(questions().size(), 2U);
}

TEST_F(PolkitAuthorityTest, NoAnswerIsARefusal) {
  EXPECT_EQ(obtain({""}), kAuthorizationDenied);
}

TEST_F(PolkitAuthorityTest, AnAuthorityThatKnowsNoActionsIsNone) {
  actions_ = "";
  EXPECT_EQ(obtain({kAllowed}), 1);
}

}  // namespace
}  // namespace kr::platform
