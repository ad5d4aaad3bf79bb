#include "library/text/SkinColor.h"

#include <gtest/gtest.h>

namespace kr {
namespace {

TEST(SkinColor, PutsAModifierBehindTheFirstCharacter) {
  EXPECT_EQ(withSkinColor(u"👋", 1), u"👋🏻");
  EXPECT_EQ(withSkinColor(u"👋", 2), u"👋🏻");
  EXPECT_EQ(withSkinColor(u"👋", 3), u"👋🏼");
  EXPECT_EQ(withSkinColor(u"👋", 4), u"👋🏽");
  EXPECT_EQ(withSkinColor(u"👋", 5), u"👋🏾");
  EXPECT_EQ(withSkinColor(u"👋", 6), u"👋🏿");
  EXPECT_EQ(withSkinColor(u"☝", 6), u"☝🏿");
  EXPECT_EQ(withSkinColor(u"a", 6), u"a🏿");
  EXPECT_EQ(withSkinColor(u"👨\u200D🌾", 4), u"👨🏽\u200D🌾");
}

TEST(SkinColor, TakesThePlaceOfAnEmojiPresentation) {
  EXPECT_EQ(withSkinColor(u"☝\uFE0F", 6), u"☝🏿");
  EXPECT_EQ(withSkinColor(u"⛹\uFE0F\u200D♀\uFE0F", 3), u"⛹🏼\u200D♀\uFE0F");
}

TEST(SkinColor, ReplacesTheFirstModifierThatIsThere) {
  EXPECT_EQ(withSkinColor(u"👋🏻", 6), u"👋🏿");
  EXPECT_EQ(withSkinColor(u"👨🏻\u200D🌾", 4), u"👨🏽\u200D🌾");
  EXPECT_EQ(withSkinColor(u"👋🏻🏼", 6), u"👋🏿🏼");
  EXPECT_EQ(withSkinColor(u"a🏻", 3), u"a🏼");
}

TEST(SkinColor, IsUnchangedWithTheModifierThatIsAskedFor) {
  EXPECT_EQ(withSkinColor(u"👋🏻", 2), std::nullopt);
  EXPECT_EQ(withSkinColor(u"👋🏻", 1), std::nullopt);
  EXPECT_EQ(withSkinColor(u"👋🏿", 6), std::nullopt);
  EXPECT_EQ(withSkinColor(u"👋", 0), std::nullopt);
  EXPECT_EQ(withSkinColor(u"", 3), std::nullopt);
}

TEST(SkinColor, OtherColoursTakeTheModifierAway) {
  for (const long color : {0L, 7L, -1L, 1000000L}) {
    EXPECT_EQ(withSkinColor(u"👋🏻", color), u"👋");
    EXPECT_EQ(withSkinColor(u"☝\uFE0F", color), std::nullopt);
  }
}

TEST(SkinColor, AModifierAtTheStartIsTheFirstCharacter) {
  EXPECT_EQ(withSkinColor(u"🏻", 6), u"🏻🏿");
  EXPECT_EQ(withSkinColor(u"🏻🏼", 6), u"🏻🏿");
}

TEST(SkinColor, TakesLoneSurrogatesForCharacters) {
  const std::u16string high{0xD83C};
  EXPECT_EQ(withSkinColor(high, 3), high + u"🏼");
  EXPECT_EQ(withSkinColor(u"ab\xD83C", 3), u"a🏼b\xD83C") << "half a modifier at the end is none";
}

}  // namespace
}  // namespace kr
