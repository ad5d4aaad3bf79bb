#include "library/process/VersionRules.h"

#include <gtest/gtest.h>

namespace kr {
namespace {

TEST(IsAtLeastVersion, ComparesNumbersAndNotText) {
  EXPECT_FALSE(isAtLeastVersion("10.9", "10.10"));
  EXPECT_TRUE(isAtLeastVersion("10.10", "10.9"));
}

TEST(IsAtLeastVersion, CountsAMissingNumberAsZero) {
  EXPECT_TRUE(isAtLeastVersion("2.1", "2.1.0"));
  EXPECT_TRUE(isAtLeastVersion("2.1", "2"));
  EXPECT_TRUE(isAtLeastVersion("2", "2.0.0"));
  EXPECT_FALSE(isAtLeastVersion("2", "2.0.1"));
  EXPECT_TRUE(isAtLeastVersion("2.0.1", "2"));
}

TEST(IsAtLeastVersion, LetsTheFirstDifferenceDecide) {
  EXPECT_TRUE(isAtLeastVersion("3.0", "2.9.9"));
  EXPECT_FALSE(isAtLeastVersion("2.9.9", "3.0"));
  EXPECT_TRUE(isAtLeastVersion("1.2.3", "1.2.3"));
}

TEST(IsAtLeastVersion, ReadsOnlyTheLeadingDigitsOfEachNumber) {
  EXPECT_TRUE(isAtLeastVersion("1.2b4", "1.2"));
  EXPECT_TRUE(isAtLeastVersion("1.2", "1.2b4"));
  EXPECT_TRUE(isAtLeastVersion("1.0", "x.y"));
  EXPECT_TRUE(isAtLeastVersion("", ""));
  EXPECT_TRUE(isAtLeastVersion("1..2", "1.0.2"));
  EXPECT_FALSE(isAtLeastVersion("1..2", "1.1"));
}

}  // namespace
}  // namespace kr
