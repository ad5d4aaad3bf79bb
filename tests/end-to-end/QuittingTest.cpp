// The ways out of the installer: Cancel, OK, closing the window, and the delay that the product has asked
// for.
#include <algorithm>
#include <chrono>

#include "platform/posix/Files.h"
#include "tests/end-to-end/Installation.h"
#include "tests/end-to-end/Products.h"
#include "tests/support/Eventually.h"

namespace kr::testing {
namespace {

class Quitting : public Installation {
 protected:
  // Presses the key until the installer has ended: the first one may come too early.
  void expectEndsOn(const std::string& key) {
    EXPECT_TRUE(eventually(
        [&] {
          press(key);
          return ends(1);
        },
        45));
    expectEnds(0);
  }

  void expectNothingDone() {
    EXPECT_FALSE(logHas("Install"));
    EXPECT_FALSE(files::itemExists(destination_));
  }

  // The picture once it is the same twice in a row.
  std::string settledPicture() {
    std::string last;
    EXPECT_TRUE(eventually(
        [&] {
          std::string now = picture();
          const bool settled = !now.empty() && now == last;
          last = std::move(now);
          std::this_thread::sleep_for(std::chrono::milliseconds(300));
          return settled;
        },
        20));
    return last;
  }

  const std::string destination_ = scratch_.folder("Applications") + "/Small.app";
};

TEST_F(Quitting, EscapeCancelsOnTheInstallPage) {
  openSmall(destination_);
  expectEndsOn("Escape");
  expectNothingDone();
}

TEST_F(Quitting, EscapeCancelsOnTheReadMePage) {
  openSmall(destination_, {"-readMePath", scratch_.file("readme.txt", "words")});
  expectEndsOn("Escape");
  expectNothingDone();
}

TEST_F(Quitting, EscapeGoesBackFromTheInstallPageToTheReadMePage) {
  openSmall(destination_, {"-readMePath", scratch_.file("readme.txt", "words")});
  const std::string readMePage = settledPicture();
  ASSERT_TRUE(eventually(
      [&] {
        press("Return");
        return eventually([&] { return picture() != readMePage; }, 2);
      },
      45))
      << "Return leads to the install page";
  const std::string installPage = settledPicture();
  press("Escape");
  ASSERT_TRUE(eventually([&] { return picture() == readMePage; })) << "Escape leads back";
  press("Return");
  ASSERT_TRUE(eventually([&] { return picture() == installPage; })) << "and Return to the install page again";
  EXPECT_FALSE(ends(0));
  expectNothingDone();
}

TEST_F(Quitting, ClosingTheWindowQuits) {
  openSmall(destination_);
  closeWindow();
  expectEnds(10);
  expectNothingDone();
}

TEST_F(Quitting, ClosingTheWindowQuitsOnTheReadMePage) {
  openSmall(destination_, {"-readMePath", scratch_.file("readme.txt", "words")});
  closeWindow();
  expectEnds(10);
  expectNothingDone();
}

TEST_F(Quitting, ClosingTheWindowQuitsAfterASetupError) {
  start({"-sourcePath", scratch_.folder("Plain.app"), "-version", "1"});
  expectLine("missing product signature");
  closeWindow();
  expectEnds(10);
}

TEST_F(Quitting, ClosingTheWindowQuitsInTheMiddleOfAnInstallation) {
  const std::string source = largeApplication(scratch_ / "Large.app");
  const std::string destination = scratch_ / "Applications/Large.app";
  install(source, destination);
  closeWindow();
  expectEnds(20);
  if (files::exists(destination)) expectSameTree(source, destination);
}

TEST_F(Quitting, TheFinalPageStaysOnEscapeAndGoesWithItsWindow) {
  install(smallApplication(scratch_ / "Small.app"), destination_);
  expectInstalled(destination_);
  for (int time = 0; time < 3; ++time) press("Escape");
  EXPECT_FALSE(ends(0)) << "there is no Cancel any more";
  closeWindow();
  expectEnds(10);
  EXPECT_FALSE(processesIn(destination_).empty()) << "the product stays";
}

TEST_F(Quitting, AfterTheDelayTheInstallerGoesByItself) {
  install(smallApplication(scratch_ / "Small.app"), destination_, {"-completionQuit", "2.5"});
  expectInstalled(destination_);
  expectLine("quit delay: 2.5");
  const double seconds = expectEnds(15);
  EXPECT_GT(seconds, 1.5);
  EXPECT_LT(seconds, 10);
}

TEST_F(Quitting, AfterAFailureTheDelayIsTheSame) {
  install(scratch_ / "missing/Small.app", destination_, {"-productCode", "SmlA", "-completionQuit", "2.5"});
  expectFailed("ERROR -- Could not copy myself to ");
  expectLine("quit delay: 2.5");
  const double seconds = expectEnds(15);
  EXPECT_GT(seconds, 1.5);
  EXPECT_LT(seconds, 10);
}

TEST_F(Quitting, OKDoesNotWaitForTheDelay) {
  install(smallApplication(scratch_ / "Small.app"), destination_, {"-completionQuit", "600"});
  expectInstalled(destination_);
  expectLine("quit delay: 600.0");
  expectQuitsOnOK();
}

TEST_F(Quitting, ADelayOfNothingLeavesTheWindowOpen) {
  install(smallApplication(scratch_ / "Small.app"), destination_, {"-completionQuit", "0"});
  expectInstalled(destination_);
  expectLine("quit delay: 0.0");
  EXPECT_FALSE(ends(1.5));
  expectQuitsOnOK();
}

}  // namespace
}  // namespace kr::testing
