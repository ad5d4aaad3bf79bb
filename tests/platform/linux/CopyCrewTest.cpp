#include "platform/linux/copy/Crew.h"

#include <gtest/gtest.h>

#include <vector>

namespace kr::platform::copy {
namespace {

TEST(Crew, CallsOnceForEachItemAndReturnsAfterTheLast) {
  Crew crew;
  for (std::size_t count = 0; count < 400; ++count) {
    std::vector<std::atomic<int>> calls(count);
    crew.run(count, [&](std::size_t index, int worker) {
      EXPECT_TRUE(worker >= 0 && worker < Crew::kWorkers);
      ++calls[index];
    });
    for (std::size_t index = 0; index < count; ++index)
      EXPECT_EQ(calls[index], 1) << index << " of " << count;
  }
}

TEST(Crew, TwoWorkAtATimeAndNeverUnderOneNumber) {
  Crew crew;
  std::atomic<int> waiting = 0;
  std::array<std::atomic<int>, Crew::kWorkers> busy{};
  // The first two calls wait for each other: one worker alone would never finish.
  crew.run(8, [&](std::size_t index, int worker) {
    EXPECT_EQ(++busy[static_cast<std::size_t>(worker)], 1);
    if (index < 2) {
      ++waiting;
      while (waiting < 2) std::this_thread::yield();
    }
    --busy[static_cast<std::size_t>(worker)];
  });
  EXPECT_EQ(waiting, 2);
}

}  // namespace
}  // namespace kr::platform::copy
