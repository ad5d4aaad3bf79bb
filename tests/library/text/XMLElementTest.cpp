#include "library/text/XMLElement.h"

#include <gtest/gtest.h>

namespace kr {
namespace {

TEST(XMLElement, IsTheTextBetweenTheTags) {
  EXPECT_EQ(xmlElement(u"<a>1</a><b>2</b>", u"b"), u"2");
  EXPECT_EQ(xmlElement(u"x<a></a>", u"a"), u"");
  EXPECT_EQ(xmlElement(u"<a><b>1</b></a>", u"a"), u"<b>1</b>");
  EXPECT_EQ(xmlElement(u"<a>1</a><a>2</a>", u"a"), u"1");
  EXPECT_EQ(xmlElement(u"</a><a>1</a>", u"a"), u"1") << "the end behind the start counts";
}

TEST(XMLElement, IsNoneWhenATagIsMissing) {
  EXPECT_EQ(xmlElement(u"<a>1", u"a"), std::nullopt);
  EXPECT_EQ(xmlElement(u"1</a>", u"a"), std::nullopt);
  EXPECT_EQ(xmlElement(u"</a><a>", u"a"), std::nullopt);
  EXPECT_EQ(xmlElement(u"", u"a"), std::nullopt);
}

TEST(XMLElement, TakesTagsLiterally) {
  EXPECT_EQ(xmlElement(u"<A>1</A>", u"a"), std::nullopt);
  EXPECT_EQ(xmlElement(u"<a x=\"1\">1</a>", u"a"), std::nullopt);
  EXPECT_EQ(xmlElement(u"<a >1</a >", u"a "), u"1");
  EXPECT_EQ(xmlElement(u"<>1</>", u""), u"1");
}

}  // namespace
}  // namespace kr
