#include "platform/linux/PatientQuestions.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>

#include "tests/support/Eventually.h"

namespace kr::platform {
namespace {

using kr::testing::eventually;
using Number = std::optional<int>;

class PatientQuestion : public ::testing::Test {
 protected:
  PatientQuestions<int> questions;
  std::promise<void> gate;
};

TEST_F(PatientQuestion, HasItsAnswer) {
  // On a busy machine an answer may be late.
  EXPECT_TRUE(eventually([&] { return questions.ask("a", [] { return 1; }) == 1; }));
  EXPECT_TRUE(eventually([&] { return questions.ask("b", [] { return 2; }) == 2; }));
}

TEST_F(PatientQuestion, IsNotPutAgainWhileItIsOpen) {
  const std::shared_future<void> opened = gate.get_future().share();
  const auto asked = std::make_shared<std::atomic<int>>(0);
  const auto ask = [&] {
    return questions.ask("a", [opened, asked] {
      ++*asked;
      opened.wait();
      return 7;
    });
  };
  for (int i = 0; i < 5; ++i) EXPECT_EQ(ask(), Number{});
  EXPECT_TRUE(eventually([&] { return *asked > 0; }));
  EXPECT_EQ(*asked, 1);
  EXPECT_TRUE(eventually([&] { return questions.ask("b", [] { return 2; }) == 2; })) << "another one is";
  gate.set_value();
  EXPECT_TRUE(eventually([&] { return ask() == 7; }));
}

TEST_F(PatientQuestion, IsPutAnewOnceItWasAnswered) {
  int calls = 0;
  EXPECT_TRUE(eventually([&] {
    ++calls;
    return questions.ask("a", [calls] { return calls; }) == calls;
  }));
  EXPECT_TRUE(eventually([&] { return questions.ask("a", [] { return -1; }) == -1; }));
}

TEST_F(PatientQuestion, MayOutliveWhoAsked) {
  const std::shared_future<void> opened = gate.get_future().share();
  std::promise<void> ended;
  {
    PatientQuestions<int> others;
    EXPECT_EQ(others.ask("a",
                         [opened, &ended] {
                           opened.wait();
                           ended.set_value_at_thread_exit();
                           return 1;
                         }),
              Number{});
  }
  gate.set_value();
  EXPECT_EQ(ended.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
}

}  // namespace
}  // namespace kr::platform
