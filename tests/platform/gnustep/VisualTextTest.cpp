#include "platform/gnustep/VisualText.h"

#include <gtest/gtest.h>

namespace kr {
namespace {

TEST(VisualText, TellsWhetherAnythingGoesFromRightToLeft) {
  EXPECT_FALSE(hasRightToLeft(u""));
  EXPECT_FALSE(hasRightToLeft(u"Notes 1.0 日本語 \U0001F4D2"));
  EXPECT_TRUE(hasRightToLeft(u"Notes תו"));
  EXPECT_TRUE(hasRightToLeft(u"تثبيت"));
}

TEST(VisualText, LeavesOtherTextAsItIs) {
  EXPECT_EQ(visualLine(u"Notes (1.0)", false), u"Notes (1.0)");
  EXPECT_EQ(visualLine(u"", true), u"");
}

TEST(VisualText, JoinsArabicLettersAndTurnsThemRound) {
  // Beh, alef, beh: initial beh, final alef, isolated beh.
  EXPECT_EQ(visualLine(u"\u0628\u0627\u0628", true), u"\uFE8F\uFE8E\uFE91");
  // Lam and alef become one.
  EXPECT_EQ(visualLine(u"\u0644\u0627", true), u"\uFEFB");
}

TEST(VisualText, KeepsNamesAndNumbersReadableInALineFromRightToLeft) {
  EXPECT_EQ(visualLine(u"\u05D0\u05D1 Notes 1.0.", true), u".Notes 1.0 \u05D1\u05D0");
  EXPECT_EQ(visualLine(u"(\u05D0)", true), u"(\u05D0)") << "brackets open towards what they enclose";
}

}  // namespace
}  // namespace kr
