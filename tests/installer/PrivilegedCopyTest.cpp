#include "installer/PrivilegedCopy.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Services.h"
#include "platform/testing/InMemoryAuthorization.h"
#include "platform/testing/RecordingLog.h"

namespace kr {
namespace {

using Lines = std::vector<std::string>;

class PrivilegedCopyTest : public ::testing::Test {
 protected:
  PrivilegedCopyTest() {
    platform::Services set = platform::services();
    set.authorization = &authorization_;
    set.log = &log_;
    scope_.emplace(set);
  }

  bool copy() {
    canceled_ = true;
    return copyWithAuthorization(
        request_, [this](bool start) { calls_.emplace_back(start ? "start" : "stop"); }, &canceled_);
  }

  Lines calls_;
  platform::testing::InMemoryAuthorization authorization_{calls_};
  platform::testing::RecordingLog log_;
  PrivilegedCopy request_{.source = "/disk/P.app",
                          .destination = "/Applications/P.app",
                          .wrapper = {},
                          .tool = "/installer/train"};
  bool canceled_ = false;

 private:
  std::optional<platform::ScopedServices> scope_;
};

TEST_F(PrivilegedCopyTest, TheRightIsAskedForWhileNothingMovesThenTheToolRuns) {
  authorization_.tool = [] { return 0; };
  EXPECT_TRUE(copy());
  EXPECT_FALSE(canceled_);
  EXPECT_EQ(calls_, (Lines{"stop", "create /installer/train", "obtain system.privilege.admin 19", "start",
                           "execute /installer/train [/disk/P.app] [/Applications/P.app]", "free"}));
  EXPECT_EQ(log_.lines(), Lines{});
}

TEST_F(PrivilegedCopyTest, AWrapperIsTheThirdArgument) {
  request_.wrapper = "/disk/P Folder";
  authorization_.tool = [] { return 0; };
  EXPECT_TRUE(copy());
  EXPECT_EQ(calls_.at(4), "execute /installer/train [/disk/P.app] [/Applications/P.app] [/disk/P Folder]");
}

TEST_F(PrivilegedCopyTest, WithoutTheToolNobodyIsAskedForAPassword) {
  request_.tool.clear();
  EXPECT_FALSE(copy());
  EXPECT_FALSE(canceled_);
  EXPECT_EQ(calls_, Lines{});
  EXPECT_EQ(log_.lines(),
            Lines{"The installer has no tool \"train\": nothing can be copied with authorization"});
}

TEST_F(PrivilegedCopyTest, PathsGoToTheToolAsTheyAre) {
  request_.source = " \n\xFF -dash.app";
  request_.destination = "/Applications/ P.app ";
  authorization_.tool = [] { return 0; };
  EXPECT_TRUE(copy());
  EXPECT_EQ(calls_.at(4), "execute /installer/train [ \n\xFF -dash.app] [/Applications/ P.app ]");
}

TEST_F(PrivilegedCopyTest, NothingIsAskedForWithoutADestinationOrASource) {
  const std::string blanks =
      " \t\n\v\f\r\xC2\x85\xC2\xA0\xE1\x9A\x80\xE2\x80\x80\xE2\x80\x8B\xE2\x80\xA8\xE2\x80\xAF\xE3\x80\x80";
  for (const std::string& blank : {std::string(), std::string("   "), blanks}) {
    for (std::string PrivilegedCopy::*path : {&PrivilegedCopy::destination, &PrivilegedCopy::source}) {
      const std::string whole = std::exchange(request_.*path, blank);
      EXPECT_FALSE(copy());
      EXPECT_FALSE(canceled_);
      request_.*path = whole;
    }
  }
  EXPECT_EQ(calls_, Lines{});
  EXPECT_EQ(log_.lines(), Lines{});
}

TEST_F(PrivilegedCopyTest, WithoutAReferenceTheAnimationStaysStopped) {
  authorization_.available = false;
  EXPECT_FALSE(copy());
  EXPECT_FALSE(canceled_);
  EXPECT_EQ(calls_, (Lines{"stop", "create /installer/train"}));
}

TEST_F(PrivilegedCopyTest, ADismissedDialogIsACancellation) {
  authorization_.rightStatus = -60006;
  EXPECT_FALSE(copy());
  EXPECT_TRUE(canceled_);
  EXPECT_EQ(calls_, (Lines{"stop", "create /installer/train", "obtain system.privilege.admin 19", "free"}));
  EXPECT_EQ(log_.lines(), Lines{});
}

TEST_F(PrivilegedCopyTest, ARightThatIsRefusedForAnotherReasonIsNone) {
  for (const platform::AuthorizationStatus status : {-60005, -60007, -60008, 1}) {
    calls_.clear();
    authorization_.rightStatus = status;
    EXPECT_FALSE(copy());
    EXPECT_FALSE(canceled_);
    EXPECT_EQ(calls_, (Lines{"stop", "create /installer/train", "obtain system.privilege.admin 19", "free"}));
  }
}

TEST_F(PrivilegedCopyTest, NobodyNeedsToAskWhetherItWasCanceled) {
  authorization_.rightStatus = -60006;
  EXPECT_FALSE(copyWithAuthorization(
      request_, [](bool) {}, nullptr));
}

TEST_F(PrivilegedCopyTest, AToolThatFailsIsAFailure) {
  authorization_.tool = [] { return 1; };
  EXPECT_FALSE(copy());
  EXPECT_FALSE(canceled_);
  authorization_.tool = [] { return ::raise(SIGTERM); };
  EXPECT_FALSE(copy());
  EXPECT_FALSE(canceled_);
  EXPECT_EQ(log_.lines(), (Lines{"WEXITSTATUS", "!WIFEXITED"}));
  EXPECT_EQ(calls_.back(), "free");
}

TEST_F(PrivilegedCopyTest, AToolThatCannotBeStartedIsAFailure) {
  authorization_.executeStatus = -60031;
  EXPECT_FALSE(copy());
  EXPECT_FALSE(canceled_);
  EXPECT_EQ(calls_.back(), "free");
  EXPECT_EQ(log_.lines(), Lines{"AuthorizationExecuteWithPrivileges failed (/installer/train)"});
}

TEST_F(PrivilegedCopyTest, ADialogThatTheSystemShowsAtTheToolsStartCanBeDismissedToo) {
  authorization_.executeStatus = -60006;
  EXPECT_FALSE(copy());
  EXPECT_TRUE(canceled_);
  EXPECT_EQ(log_.lines(), Lines{"AuthorizationExecuteWithPrivileges failed (/installer/train)"});
}

TEST_F(PrivilegedCopyTest, AToolThatSomebodyElseHasReapedIsASuccess) {
  EXPECT_TRUE(copy());
  EXPECT_EQ(log_.lines(), Lines{"no pid"});
}

}  // namespace
}  // namespace kr
