#include "installer/Handshake.h"

#include <gtest/gtest.h>

#include "platform/FourCharacterCode.h"
#include "platform/Services.h"
#include "platform/testing/RecordingLog.h"

namespace kr {
namespace {

using Lines = std::vector<std::string>;

class Handshake : public ::testing::Test {
 protected:
  Handshake() : services_(withLog(log_)) {}

  static platform::Services withLog(platform::testing::RecordingLog& log) {
    platform::Services set = platform::services();
    set.log = &log;
    return set;
  }

  platform::testing::RecordingLog log_;
  platform::ScopedServices services_;
};

TEST_F(Handshake, TheEventHasTheCodesThatProductsSend) {
  EXPECT_EQ(kDoneEventClass, codeFromText("SinS"));
  EXPECT_EQ(kDoneEventID, codeFromText("Done"));
}

TEST_F(Handshake, TheTextOfTheInstallationConfirmsIt) {
  EXPECT_TRUE(confirmsInstallation("Foo 2.1", "Foo 2.1"));
  EXPECT_EQ(log_.lines(),
            (Lines{"received Done event (Foo 2.1), current installation: Foo 2.1", "installation finished"}));
}

TEST_F(Handshake, AnEventBeforeAnyInstallationIsLoggedOnly) {
  EXPECT_FALSE(confirmsInstallation("Foo 2.1", std::nullopt));
  EXPECT_FALSE(confirmsInstallation(std::nullopt, std::nullopt)) << "two that are missing are not the same";
  EXPECT_FALSE(confirmsInstallation("(null)", std::nullopt));
  EXPECT_EQ(log_.lines(), (Lines{"received Done event (Foo 2.1), current installation: (null)",
                                 "received Done event ((null)), current installation: (null)",
                                 "received Done event ((null)), current installation: (null)"}));
}

TEST_F(Handshake, AnEventWithoutTextIsLoggedOnly) {
  EXPECT_FALSE(confirmsInstallation(std::nullopt, "Foo 2.1"));
  EXPECT_EQ(log_.lines(), (Lines{"received Done event ((null)), current installation: Foo 2.1"}));
}

TEST_F(Handshake, CaseSpacesAndEveryOtherCharacterCount) {
  for (const char* text : {"", "foo 2.1", "Foo 2.1 ", " Foo 2.1", "Foo  2.1", "Foo2.1", "Foo 2.10", "Foo 2",
                           "Foo", "2.1", "Foo 2,1", "Foo\t2.1", "Foo 2.1\n"}) {
    EXPECT_FALSE(confirmsInstallation(text, "Foo 2.1")) << text;
  }
  EXPECT_FALSE(confirmsInstallation(std::string("Foo 2.1\0", 8), "Foo 2.1"));
  EXPECT_FALSE(confirmsInstallation("Gru\xCC\x88n 1", "Gr\xC3\xBCn 1")) << "the same to the eye only";
  EXPECT_TRUE(confirmsInstallation("Gr\xC3\xBCn 1", "Gr\xC3\xBCn 1"));
}

TEST_F(Handshake, WithoutAVersionTheProductsOwnTextNeverMatches) {
  EXPECT_FALSE(confirmsInstallation("Foo 2.1", "Foo (null)"));
  EXPECT_EQ(log_.lines(), (Lines{"received Done event (Foo 2.1), current installation: Foo (null)"}));
}

TEST_F(Handshake, AForeignTextIsOneLine) {
  EXPECT_FALSE(confirmsInstallation("a%@%n\ninstallation finished", "Foo 2.1"));
  EXPECT_EQ(log_.lines().size(), 1U);
  EXPECT_TRUE(log_.lines()[0].starts_with("received Done event (a%@%n")) << log_.lines()[0];
}

}  // namespace
}  // namespace kr
