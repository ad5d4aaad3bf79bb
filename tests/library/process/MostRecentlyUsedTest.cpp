#include "library/process/MostRecentlyUsed.h"

#include <gtest/gtest.h>

namespace kr {
namespace {

using Numbers = std::vector<int>;

MostRecentlyUsed<int> listOf(const Numbers& numbers) {
  MostRecentlyUsed<int> list;
  for (auto number = numbers.rbegin(); number != numbers.rend(); ++number) list.add(*number);
  return list;
}

TEST(MostRecentlyUsed, DoesNotExistBeforeItsFirstEntry) {
  MostRecentlyUsed<int> list;
  EXPECT_FALSE(list.exists());
  list.remove([](int) { return true; });
  EXPECT_FALSE(list.exists());
  EXPECT_TRUE(list.entries().empty());
  EXPECT_EQ(list.find([](int) { return true; }), std::nullopt);
  list.add(1);
  EXPECT_TRUE(list.exists());
}

TEST(MostRecentlyUsed, PutsANewEntryInFront) {
  EXPECT_EQ(listOf({3, 2, 1}).entries(), (Numbers{3, 2, 1}));
}

TEST(MostRecentlyUsed, FindsTheFirstEntryThatFits) {
  EXPECT_EQ(listOf({5, 4, 3, 2}).find([](int number) { return number % 2 == 0; }), 1U);
  EXPECT_EQ(listOf({5}).find([](int number) { return number == 4; }), std::nullopt);
}

TEST(MostRecentlyUsed, AUsedEntryMovesToTheFrontAndTheOthersKeepTheirOrder) {
  MostRecentlyUsed<int> list = listOf({1, 2, 3, 4});
  EXPECT_EQ(list.use(2), 3);
  EXPECT_EQ(list.entries(), (Numbers{3, 1, 2, 4}));
}

TEST(MostRecentlyUsed, UsingTheFrontEntryChangesNothing) {
  MostRecentlyUsed<int> list = listOf({1, 2, 3});
  EXPECT_EQ(list.use(0), 1);
  EXPECT_EQ(list.entries(), (Numbers{1, 2, 3}));
}

TEST(MostRecentlyUsed, RemovesNeighboursThatNoLongerHold) {
  MostRecentlyUsed<int> list = listOf({2, 4, 1, 6, 3});
  list.remove([](int number) { return number % 2 == 0; });
  EXPECT_EQ(list.entries(), (Numbers{1, 3}));
}

TEST(MostRecentlyUsed, IsEmptyAndNotAbsentAfterTheLastEntryWasRemoved) {
  MostRecentlyUsed<int> list = listOf({2, 4});
  list.remove([](int) { return true; });
  EXPECT_TRUE(list.exists());
  EXPECT_TRUE(list.entries().empty());
}

}  // namespace
}  // namespace kr
