#include "platform/Format.h"

#include <gtest/gtest.h>

#include <limits>

namespace kr {
namespace {

TEST(Format, DirectivesTakeTheirArgumentsInOrder) {
  EXPECT_EQ(formatted("Quitting '%@': %@", std::string("AAAA"), "Notes"), "Quitting 'AAAA': Notes");
  EXPECT_EQ(formatted("launched: %d", 1), "launched: 1");
  EXPECT_EQ(formatted("quit %@: terminated after %1.3fs (%d attempts)", "N", 0.00123, 2U),
            "quit N: terminated after 0.001s (2 attempts)");
  EXPECT_EQ(formatted("temp-%X", 0xBEEFL), "temp-BEEF");
  EXPECT_EQ(formatted("%02X|%5d|%-3d|", 10, 42, 7), "0A|   42|7  |");
  EXPECT_EQ(formatted("(%s)", "tool"), "(tool)");
}

TEST(Format, AMissingTextIsNamedAsSuch) {
  EXPECT_EQ(formatted("autolaunch = %@", std::optional<std::string>()), "autolaunch = (null)");
  EXPECT_EQ(formatted("autolaunch = %@", std::optional<std::string>("x")), "autolaunch = x");
}

TEST(Format, TextOfAnArgumentIsNotReadAsAFormat) {
  EXPECT_EQ(formatted("%@ %d", "100% %@ %n", 3), "100% %@ %n 3");
}

TEST(Format, ArgumentsOfAnotherKindArePrintedAllTheSame) {
  EXPECT_EQ(formatted("%@ %@", 3, 2.5), "3 2.5");
  EXPECT_EQ(formatted("%d", 2.9), "2");
  EXPECT_EQ(formatted("%1.1f", 2), "2.0");
  EXPECT_EQ(formatted("%d", "text"), "text");
}

TEST(Format, ANumberThatDoesNotFitInIsTheNearestThatDoes) {
  EXPECT_EQ(formatted("%d", 1e300), "9223372036854775807");
  EXPECT_EQ(formatted("%d", -1e300), "-9223372036854775808");
  EXPECT_EQ(formatted("%d", std::numeric_limits<double>::quiet_NaN()), "0");
}

TEST(Format, WhatIsNoDirectiveStaysAsItIs) {
  EXPECT_EQ(formatted("100%% done"), "100% done");
  EXPECT_EQ(formatted("%@ and %@", "one"), "one and %@");
  EXPECT_EQ(formatted("50% "), "50% ");
  EXPECT_EQ(formatted("%"), "%");
  EXPECT_EQ(formatted("%y", 1), "%y");
}

TEST(Format, LengthModifiersAreTakenForWhatTheyStandFor) {
  EXPECT_EQ(formatted("%ld %lu %lld", -1L, 2UL, 3LL), "-1 2 3");
}

}  // namespace
}  // namespace kr
