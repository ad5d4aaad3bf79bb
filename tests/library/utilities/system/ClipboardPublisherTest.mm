// Which of two applications has put something on the clipboard of a real desktop.
#import "library/utilities/KRUtilities.h"
#import "tests/library/utilities/system/LiveDesktop.h"

namespace kr::testing {
namespace {

class LiveClipboard : public LiveDesktop {
 protected:
  static pid_t publisher() { return [[KRUtilities clipboardPublisherProcess] unixPID]; }

  // The program hears of the front application in its run loop only.
  static bool isPublishedBy(const TestApplication& application) {
    return eventuallyInRunLoop([&] { return publisher() == application.pid(); });
  }
};

TEST_F(LiveClipboard, IsPublishedByTheApplicationThatWasInFrontAtTheTime) {
  const auto writer = open("Writer.app", "W");
  const auto reader = open("Reader.app", "R");
  [KRUtilities installProcessWatcher];
  [KRProcess installNotifications];
  EXPECT_EQ([KRUtilities clipboardPublisherProcess], nil);
  activate("W");
  runLoop(0.1);
  EXPECT_EQ([KRUtilities clipboardPublisherProcess], nil) << "nobody has changed it yet";
  writer->child().signal(SIGUSR2);
  EXPECT_TRUE(isPublishedBy(*writer));
  activate("R");
  runLoop(0.1);
  EXPECT_EQ(publisher(), writer->pid()) << "the reader has changed nothing";
  reader->child().signal(SIGUSR2);
  EXPECT_TRUE(isPublishedBy(*reader));
  activate("W");
  runLoop(0.1);
  EXPECT_EQ(publisher(), reader->pid());
}

TEST_F(LiveClipboard, IsToldRightAlsoBeforeTheChangeOfTheFrontIs) {
  const auto writer = open("Writer.app", "W");
  EXPECT_EQ([KRUtilities clipboardPublisherProcess], nil);
  writer->child().signal(SIGUSR2);
  EXPECT_TRUE(isPublishedBy(*writer));
  // The run loop does not run in between.
  const auto reader = open("Reader.app", "R");
  EXPECT_EQ(publisher(), writer->pid());
}

TEST_F(LiveClipboard, IsWatchedByItselfASecondAfterTheFirstUse) {
  const auto writer = open("Writer.app", "W");
  static_cast<void>([KRUtilities applicationName]);
  // Changes of the front are told from the first look at the applications on.
  static_cast<void>([KRProcess currentProcess]);
  runLoop(1.2);
  // The watch begins with the next application that comes to the front.
  const auto reader = open("Reader.app", "R");
  runLoop(0.3);
  reader->child().signal(SIGUSR2);
  runLoop(0.3);
  activate("W");
  runLoop(0.3);
  EXPECT_EQ(publisher(), reader->pid());
}

}  // namespace
}  // namespace kr::testing
