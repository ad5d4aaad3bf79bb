#include "library/utilities/DailyPeriod.h"

#include <gtest/gtest.h>

namespace kr {
namespace {

constexpr int at(int hour, int minute) {
  return hour * 60 + minute;
}

TEST(DailyPeriod, LastsFromItsStartToBeforeItsEnd) {
  EXPECT_FALSE(isInDailyPeriod(at(8, 59), at(9, 0), at(17, 0)));
  EXPECT_TRUE(isInDailyPeriod(at(9, 0), at(9, 0), at(17, 0)));
  EXPECT_TRUE(isInDailyPeriod(at(16, 59), at(9, 0), at(17, 0)));
  EXPECT_FALSE(isInDailyPeriod(at(17, 0), at(9, 0), at(17, 0)));
}

TEST(DailyPeriod, MayPassMidnight) {
  constexpr int kStart = 1320;
  constexpr int kEnd = 420;
  EXPECT_FALSE(isInDailyPeriod(at(21, 59), kStart, kEnd));
  EXPECT_TRUE(isInDailyPeriod(at(22, 0), kStart, kEnd));
  EXPECT_TRUE(isInDailyPeriod(at(23, 30), kStart, kEnd));
  EXPECT_TRUE(isInDailyPeriod(at(0, 0), kStart, kEnd));
  EXPECT_TRUE(isInDailyPeriod(at(6, 59), kStart, kEnd));
  EXPECT_FALSE(isInDailyPeriod(at(7, 0), kStart, kEnd));
  EXPECT_FALSE(isInDailyPeriod(at(12, 0), kStart, kEnd));
}

TEST(DailyPeriod, IsEmptyWhenItsEndsAreTheSameTime) {
  for (int minute = 0; minute < 1440; ++minute) {
    ASSERT_FALSE(isInDailyPeriod(minute, 600, 600)) << minute;
    ASSERT_FALSE(isInDailyPeriod(minute, 0, 1440)) << minute;
    ASSERT_FALSE(isInDailyPeriod(minute, -60, 1380)) << minute;
  }
}

TEST(DailyPeriod, NegativeTimesAreOfTheDayBefore) {
  EXPECT_FALSE(isInDailyPeriod(at(22, 59), -60, 60));
  EXPECT_TRUE(isInDailyPeriod(at(23, 0), -60, 60));
  EXPECT_TRUE(isInDailyPeriod(at(0, 59), -60, 60));
  EXPECT_FALSE(isInDailyPeriod(at(1, 0), -60, 60));
}

TEST(DailyPeriod, LaterDaysDoNotCount) {
  EXPECT_TRUE(isInDailyPeriod(at(10, 0), 1440 + at(9, 0), 2 * 1440 + at(17, 0)));
  EXPECT_FALSE(isInDailyPeriod(at(18, 0), 1440 + at(9, 0), 2 * 1440 + at(17, 0)));
}

// Of every period of whole hours, each minute is in it or in the one from its end to its start.
TEST(DailyPeriod, AndItsComplementMakeADay) {
  for (int start = 0; start < 1440; start += 60) {
    for (int end = 0; end < 1440; end += 60) {
      if (start == end) continue;
      int minutes = 0;
      for (int minute = 0; minute < 1440; ++minute) {
        ASSERT_NE(isInDailyPeriod(minute, start, end), isInDailyPeriod(minute, end, start))
            << minute << " " << start << " " << end;
        minutes += isInDailyPeriod(minute, start, end) ? 1 : 0;
      }
      ASSERT_EQ(minutes, (end - start + 1440) % 1440);
    }
  }
}

}  // namespace
}  // namespace kr
