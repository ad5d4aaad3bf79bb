#include "platform/Clipboard.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <memory>

#include "platform/SystemServices.h"
#include "tests/support/Desktop.h"
#include "tests/support/Eventually.h"
#include "tests/support/StoppedDisplay.h"
#include "tests/support/TestApplication.h"

namespace kr::platform {
namespace {

using kr::testing::Desktop;
using kr::testing::eventually;
using kr::testing::ScratchFolder;
using kr::testing::TestApplication;

class SelectionClipboard : public ::testing::Test {
 protected:
  bool grows(TestApplication& application) {
    const long before = clipboard.changeCount();
    application.child().signal(SIGUSR2);
    return eventually([&] { return clipboard.changeCount() == before + 1; });
  }

  ScratchFolder folder;
  std::unique_ptr<Desktop> desktop = std::make_unique<Desktop>();
  Clipboard& clipboard = systemClipboard();
  std::unique_ptr<TestApplication> one = open("One.app");
  std::unique_ptr<TestApplication> two = open("Two.app");

  std::unique_ptr<TestApplication> open(const std::string& name) {
    return std::make_unique<TestApplication>(folder, name, testing::BundleInformation{},
                                             std::vector<std::string>{"copies", "window", "A"});
  }
};

TEST_F(SelectionClipboard, CountsWhatAnyApplicationPutsThere) {
  EXPECT_TRUE(grows(*one));
  EXPECT_TRUE(grows(*two));
  EXPECT_TRUE(grows(*two)) << "once more";
  EXPECT_TRUE(grows(*one));
}

TEST_F(SelectionClipboard, DoesNotCountTheEndOfAnApplication) {
  ASSERT_TRUE(grows(*one));
  const long before = clipboard.changeCount();
  one.reset();
  EXPECT_FALSE(eventually([&] { return clipboard.changeCount() != before; }, 0.3));
}

TEST_F(SelectionClipboard, KeepsItsCountWithoutAServerAndGoesOnWithTheNext) {
  ASSERT_TRUE(grows(*one));
  const long before = clipboard.changeCount();
  one.reset();
  two.reset();
  desktop.reset();
  EXPECT_EQ(clipboard.changeCount(), before);
  desktop = std::make_unique<Desktop>();
  one = open("Three.app");
  // A server of the same name is looked for again after a second.
  EXPECT_TRUE(eventually([&] {
    one->child().signal(SIGUSR2);
    return clipboard.changeCount() > before;
  }));
}

TEST_F(SelectionClipboard, IsNotWaitedForWhileTheServerDoesNotAnswerAndMissesNothing) {
  ASSERT_TRUE(grows(*one));
  const long before = clipboard.changeCount();
  {
    kr::testing::StoppedDisplay server(*desktop);
    one->child().signal(SIGUSR2);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(clipboard.changeCount(), before);
    EXPECT_FALSE(server.hadToGoOn());
  }
  EXPECT_TRUE(eventually([&] { return clipboard.changeCount() == before + 1; }));
  EXPECT_TRUE(grows(*two)) << "the watch is kept";
}

TEST_F(SelectionClipboard, HasTheCountOfBeforeWithoutAServer) {
  ASSERT_TRUE(grows(*one));
  const long before = clipboard.changeCount();
  one.reset();
  two.reset();
  desktop = std::make_unique<Desktop>(kr::testing::DesktopParts{.display = false});
  EXPECT_EQ(clipboard.changeCount(), before);
}

}  // namespace
}  // namespace kr::platform
