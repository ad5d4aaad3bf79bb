#include "platform/linux/copy/Crew.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace kr::platform::copy {
namespace {

TEST(Crew, CallsOnceForEachItemOfEachListUntilItHasFinished) {
  Crew crew;
  for (int round = 0; round < 20; ++round) {
    std::vector<std::vector<std::atomic<int>>> lists;
    for (std::size_t count = 0; count < 60; ++count) lists.emplace_back(count);
    for (std::vector<std::atomic<int>>& calls : lists) {
      crew.add(calls.size(), [&calls](std::size_t index, int worker) {
        EXPECT_TRUE(worker >= 0 && worker < Crew::kWorkers);
        ++calls[index];
      });
    }
    crew.finish();
    for (const auto& calls : lists) {
      for (std::size_t index = 0; index < calls.size(); ++index)
        ASSERT_EQ(calls[index], 1) << index << " of " << calls.size();
    }
  }
}

TEST(Crew, TwoWorkAtATimeAndNeverUnderOneNumber) {
  Crew crew;
  std::atomic<int> waiting = 0;
  std::array<std::atomic<int>, Crew::kWorkers> busy{};
  // The first two calls wait for each other: one worker alone would never finish.
  crew.add(8, [&](std::size_t index, int worker) {
    EXPECT_EQ(++busy[static_cast<std::size_t>(worker)], 1);
    if (index < 2) {
      ++waiting;
      while (waiting < 2) std::this_thread::yield();
    }
    --busy[static_cast<std::size_t>(worker)];
  });
  crew.finish();
  EXPECT_EQ(waiting, 2);
}

TEST(Crew, KeepsNoMoreListsThanAFewWhileItsHelperIsBusy) {
  Crew crew;
  std::atomic<bool> isHeld = true;
  std::atomic<int> held = 0;
  std::atomic<int> alive = 0;
  struct Counted {
    explicit Counted(std::atomic<int>& number) : number(number) { ++number; }
    ~Counted() { --number; }
    std::atomic<int>& number;
  };
  crew.add(1, [&](std::size_t, int) {
    ++held;
    while (isHeld) std::this_thread::yield();
  });
  while (held == 0) std::this_thread::yield();
  int most = 0;
  for (int list = 0; list < 100; ++list) {
    crew.add(1, [counted = std::make_shared<Counted>(alive)](std::size_t, int) {});
    most = std::max(most, alive.load());
  }
  isHeld = false;
  crew.finish();
  EXPECT_GT(most, 1);
  EXPECT_LE(most, 8);
  EXPECT_EQ(alive, 0);
}

TEST(Crew, EndsWithoutTheWorkThatNobodyHasBegun) {
  std::atomic<int> calls = 0;
  {
    Crew crew;
    crew.add(1, [&](std::size_t, int) { ++calls; });
  }
  EXPECT_LE(calls, 1);
}

}  // namespace
}  // namespace kr::platform::copy
