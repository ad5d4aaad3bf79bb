#include "library/appearance/VerticalScroll.h"

#include <gtest/gtest.h>

namespace kr {
namespace {

constexpr VerticalSpan kVisible{100, 50};

TEST(VerticalScroll, IsNotNeededForWhatIsVisible) {
  EXPECT_EQ(verticalScroll({100, 49.5}, kVisible, false), std::nullopt);
  EXPECT_EQ(verticalScroll({120, 10}, kVisible, true), std::nullopt);
  EXPECT_EQ(verticalScroll({149, 0}, kVisible, false), std::nullopt);
}

TEST(VerticalScroll, GoesBackToABeginningThatIsNot) {
  EXPECT_EQ(verticalScroll({99.5, 10}, kVisible, false), -0.5);
  EXPECT_EQ(verticalScroll({0, 20}, kVisible, false), -100);
  EXPECT_EQ(verticalScroll({-10, 20}, kVisible, true), -110);
}

TEST(VerticalScroll, GoesOnToAnEndThatIsNot) {
  EXPECT_EQ(verticalScroll({145, 20}, kVisible, false), 15);
  EXPECT_EQ(verticalScroll({400, 50}, kVisible, true), 300);
}

TEST(VerticalScroll, GoesByNothingToAnEndOnTheEdge) {
  EXPECT_EQ(verticalScroll({140, 10}, kVisible, false), 0);
  EXPECT_EQ(verticalScroll({150, 0}, kVisible, false), 0);
  EXPECT_EQ(verticalScroll({100, 50}, kVisible, true), 0) << "just as high as what is visible";
}

TEST(VerticalScroll, ShowsTheBeginningOfWhatIsTooHigh) {
  EXPECT_EQ(verticalScroll({0, 300}, kVisible, false), -100);
  EXPECT_EQ(verticalScroll({120, 300}, kVisible, false), 20);
  EXPECT_EQ(verticalScroll({100, 300}, kVisible, false), 0);
}

TEST(VerticalScroll, ShowsTheEndOfWhatIsTooHighWhenThatIsPreferred) {
  EXPECT_EQ(verticalScroll({0, 300}, kVisible, true), 150);
  EXPECT_EQ(verticalScroll({0, 120}, kVisible, true), -30);
  EXPECT_EQ(verticalScroll({-150, 300}, kVisible, true), 0);
}

TEST(VerticalScroll, CutsOnlyWhatIsTooHigh) {
  EXPECT_EQ(verticalScroll({200, 50}, kVisible, true), 100);
  EXPECT_EQ(verticalScroll({200, 51}, kVisible, true), 101);
  EXPECT_EQ(verticalScroll({200, 51}, kVisible, false), 100);
}

}  // namespace
}  // namespace kr
