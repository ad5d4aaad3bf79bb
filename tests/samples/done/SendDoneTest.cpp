#include "samples/done/SendDone.h"

#include <gtest/gtest.h>

#include "installer/Handshake.h"
#include "platform/FourCharacterCode.h"
#include "platform/Services.h"
#include "platform/testing/InMemoryAppleEvents.h"
#include "platform/testing/InMemoryProcessTable.h"

namespace kr {
namespace {

using platform::AppleEvent;
using platform::AppleEventError;
using platform::SerialNumber;

constexpr std::uint32_t kInstaller = 0x566D496E;  // 'VmIn'

class SendDone : public ::testing::Test {
 protected:
  SendDone() : services_(set()) {}

  platform::Services set() {
    platform::Services set = platform::services();
    set.appleEvents = &events_;
    set.processes = &processes_;
    return set;
  }

  SerialNumber target(std::size_t event) { return std::get<SerialNumber>(events_.sent.at(event).target); }

  platform::testing::InMemoryAppleEvents events_;
  platform::testing::InMemoryProcessTable processes_;
  platform::ScopedServices services_;
};

TEST_F(SendDone, TheTagIsNameSpaceVersion) {
  EXPECT_EQ(installationTag("Velmora Notes", "1.0"), "Velmora Notes 1.0");
  EXPECT_EQ(installationTag("", ""), " ");
}

TEST_F(SendDone, TheEventHasClassIDAndTheTagAsAText) {
  processes_.add({.pid = 100, .signature = kInstaller, .name = "Installer"});
  EXPECT_EQ(sendDone("Velmora Notes 1.0"), 1U);
  ASSERT_EQ(events_.sent.size(), 1U);
  const AppleEvent& event = events_.sent[0];
  EXPECT_EQ(textFromCode(event.eventClass), "SinS");
  EXPECT_EQ(textFromCode(event.eventID), "Done");
  EXPECT_EQ(event.directText, "Velmora Notes 1.0");
  EXPECT_TRUE(event.textIsAlone);
  EXPECT_NE(event.sendMode & platform::kSendWaitsForReply, platform::kSendWaitsForReply);
}

TEST_F(SendDone, TheEventIsTheOneThatTheInstallerListensFor) {
  EXPECT_TRUE(sendDoneTo(100, "Foo 2.1"));
  EXPECT_EQ(events_.sent.at(0).eventClass, kDoneEventClass);
  EXPECT_EQ(events_.sent.at(0).eventID, kDoneEventID);
}

TEST_F(SendDone, EveryInstallerGetsItAndNobodyElse) {
  const SerialNumber one = processes_.add({.pid = 100, .signature = kInstaller, .name = "Installer"});
  processes_.add({.pid = 101, .signature = 0x566D4E74, .name = "Notes"});
  processes_.add({.pid = 102, .name = "without a signature"});
  const SerialNumber two = processes_.add({.pid = 103, .signature = kInstaller, .name = "Installer"});
  EXPECT_EQ(sendDone("x"), 2U);
  ASSERT_EQ(events_.sent.size(), 2U);
  EXPECT_EQ(target(0), one);
  EXPECT_EQ(target(1), two);
}

TEST_F(SendDone, WithoutAnInstallerNothingIsSent) {
  processes_.add({.pid = 101, .signature = 0x566D4E74, .name = "Notes"});
  EXPECT_EQ(sendDone("x"), 0U);
  EXPECT_TRUE(events_.sent.empty());
}

TEST_F(SendDone, AnInstallerThatTakesNoEventDoesNotCount) {
  processes_.add({.pid = 100, .signature = kInstaller, .name = "Installer"});
  events_.answer = AppleEventError{.step = AppleEventError::Step::send, .status = -600};
  EXPECT_EQ(sendDone("x"), 0U);
  EXPECT_FALSE(sendDoneTo(100, "x"));
}

TEST_F(SendDone, OneProcessCanBeNamed) {
  EXPECT_TRUE(sendDoneTo(100, "Foo 2.1"));
  ASSERT_EQ(events_.sent.size(), 1U);
  EXPECT_EQ(std::get<pid_t>(events_.sent[0].target), 100);
  EXPECT_EQ(events_.sent[0].directText, "Foo 2.1");
}

}  // namespace
}  // namespace kr
