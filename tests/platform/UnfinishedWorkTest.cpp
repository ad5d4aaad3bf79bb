#include "platform/UnfinishedWork.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <optional>
#include <thread>

namespace kr::platform {
namespace {

TEST(UnfinishedWork, ExistsUntilTheLastOfItHasEnded) {
  EXPECT_FALSE(UnfinishedWork::exists());
  std::optional<UnfinishedWork> one(std::in_place);
  std::optional<UnfinishedWork> two(std::in_place);
  EXPECT_TRUE(UnfinishedWork::exists());
  one.reset();
  EXPECT_TRUE(UnfinishedWork::exists());
  two.reset();
  EXPECT_FALSE(UnfinishedWork::exists());
}

TEST(UnfinishedWork, IsWaitedForAndKnowsIt) {
  std::atomic<bool> done = false;
  std::atomic<bool> begun = false;
  std::thread worker([&] {
    const UnfinishedWork work;
    begun = true;
    while (!UnfinishedWork::isLeftAlone()) std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    done = true;
  });
  while (!begun) std::this_thread::yield();
  EXPECT_FALSE(UnfinishedWork::isLeftAlone());
  UnfinishedWork::finishAll();
  EXPECT_TRUE(done);
  worker.join();
  // Without any there is nothing to wait for.
  UnfinishedWork::finishAll();
}

}  // namespace
}  // namespace kr::platform
