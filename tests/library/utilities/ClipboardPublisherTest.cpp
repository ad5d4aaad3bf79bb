#include "library/utilities/ClipboardPublisher.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace kr {
namespace {

class Clipboard : public ::testing::Test {
 protected:
  void switchTo(const std::string& process) { publisher_.processSwitched(process, changes()); }
  std::string publisherWithInFront(const std::string& process) {
    return publisher_.publisher(process, changes());
  }

  int count_ = 7;
  int asked_ = 0;

 private:
  std::function<long()> changes() {
    return [this] {
      ++asked_;
      return count_;
    };
  }

  ClipboardPublisher<std::string> publisher_;
};

TEST_F(Clipboard, HasNoKnownPublisherAtFirst) {
  switchTo("Writer");
  EXPECT_EQ(publisherWithInFront("Writer"), "");
}

TEST_F(Clipboard, WasChangedByTheProgramInFront) {
  switchTo("Writer");
  ++count_;
  EXPECT_EQ(publisherWithInFront("Writer"), "Writer");
}

TEST_F(Clipboard, KeepsItsPublisherAfterItLeftTheFront) {
  switchTo("Writer");
  ++count_;
  switchTo("Reader");
  EXPECT_EQ(publisherWithInFront("Reader"), "Writer");
  switchTo("Viewer");
  EXPECT_EQ(publisherWithInFront("Viewer"), "Writer") << "the reader has changed nothing";
  ++count_;
  EXPECT_EQ(publisherWithInFront("Viewer"), "Viewer");
}

TEST_F(Clipboard, LearnsOfASwitchThatNobodyToldItOf) {
  switchTo("Writer");
  ++count_;
  EXPECT_EQ(publisherWithInFront("Reader"), "Writer");
}

TEST_F(Clipboard, IsNotAskedWhileTheSameProgramStaysInFront) {
  switchTo("Writer");
  switchTo("Writer");
  EXPECT_EQ(asked_, 1);
  ++count_;
  switchTo("Writer");
  EXPECT_EQ(publisherWithInFront("Writer"), "Writer") << "the count is that of the first switch";
}

TEST_F(Clipboard, GivesNoCreditToAProgramThatIsNotKnown) {
  switchTo("");
  ++count_;
  switchTo("Reader");
  EXPECT_EQ(publisherWithInFront("Reader"), "");
}

}  // namespace
}  // namespace kr
