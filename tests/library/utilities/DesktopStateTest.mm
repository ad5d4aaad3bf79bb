#import "library/utilities/KRUtilities.h"
#import "tests/library/utilities/UtilitiesFixture.h"

namespace kr::testing {
namespace {

class DesktopState : public UtilitiesFixture {};

TEST_F(DesktopState, FullScreenModeFollowsTheMenuBarAfterTheFirstQuestion) {
  EXPECT_EQ(menuBar_.installations, 0);
  EXPECT_FALSE([KRUtilities fullScreenMode]);
  ASSERT_EQ(menuBar_.installations, 1);
  menuBar_.handler(platform::kMenuBarHidden);
  EXPECT_TRUE([KRUtilities fullScreenMode]);
  menuBar_.handler(platform::kMenuBarShown);
  EXPECT_FALSE([KRUtilities fullScreenMode]);
  EXPECT_EQ(menuBar_.installations, 1);
}

TEST_F(DesktopState, TheHandlerOfTheMenuBarMayBeCalledByOthers) {
  EXPECT_EQ(MonitorMenuBarEventHandler('menu', 2001), -9874);
  EXPECT_TRUE([KRUtilities fullScreenMode]);
  EXPECT_EQ(MonitorMenuBarEventHandler('menu', 2000), -9874);
  EXPECT_FALSE([KRUtilities fullScreenMode]);
}

}  // namespace
}  // namespace kr::testing
