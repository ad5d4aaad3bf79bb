// The window server goes away in the middle of it.
#include <sys/wait.h>

#include "tests/end-to-end/Installation.h"
#include "tests/end-to-end/Products.h"
#include "tests/support/TestApplication.h"

namespace kr::testing {
namespace {

class WindowServerLoss : public Installation {
 protected:
  void expectEndsWithFailure(double seconds) {
    const std::optional<int> status = ended(seconds);
    ASSERT_TRUE(status) << "it still runs";
    EXPECT_TRUE(WIFEXITED(*status) && WEXITSTATUS(*status) == 1) << *status;
  }

  const std::string product_ = smallApplication(scratch_ / "Small.app");
  const std::string destination_ = scratch_.folder("Applications") + "/Small.app";
};

TEST_F(WindowServerLoss, AnInstallationThatHasBegunIsFinished) {
  // Some seconds pass until it is ended by force.
  const TestApplication running(scratch_, "Running.app", {.signature = "RunN"}, {"stubborn"});
  install(product_, destination_, {"-productCode", "Smll", "-quitCode", "RunN"});
  expectLine("Quitting 'RunN': Running");
  stopDisplay();
  expectLine("lost the window server");
  EXPECT_FALSE(logHas("successfully copied"));
  expectLine("successfully copied", 20);
  expectLine("launched immediately: 1", 20);
  expectEndsWithFailure(30);
  expectSameTree(product_, destination_);
}

TEST_F(WindowServerLoss, WithoutAnInstallationTheProgramEnds) {
  start({"-sourcePath", product_, "-destinationPath", destination_});
  expectLine("Updated arguments: ");
  stopDisplay();
  expectEndsWithFailure(15);
  EXPECT_TRUE(logHas("lost the window server"));
  EXPECT_FALSE(logHas("finishing without a window"));
}

}  // namespace
}  // namespace kr::testing
