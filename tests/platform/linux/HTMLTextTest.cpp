#include "platform/HTMLText.h"

#include <gtest/gtest.h>

#include <chrono>

#include "platform/linux/HTMLParagraphs.h"
#include "platform/linux/HTMLReferences.h"

namespace kr::platform {
namespace {

TEST(HTMLText, ReferencesStandForCharacters) {
  EXPECT_EQ(textOfHTML(u"&lt;b&gt; &amp; &quot;caf&eacute;&quot; &hellip; &euro;"), u"<b> & \"café\" … €");
  EXPECT_EQ(textOfHTML(u"&#233;&#xE9;&#x1F600;&#65"), u"éé😀A");
  EXPECT_EQ(textOfHTML(u"a&nbsp;&nbsp;b"), u"a\u00A0\u00A0b") << "no white space";
  EXPECT_EQ(textOfHTML(u"&amp;lt; &#38;lt;"), u"&lt; &lt;") << "once only";
  EXPECT_EQ(textOfHTML(u"a & b &; &bogus; AT&T"), u"a & b &; &bogus; AT&T");
}

TEST(HTMLText, TagsAreLeftOut) {
  EXPECT_EQ(textOfHTML(u"a <b>b</b><i>c</i> <img src=x>d"), u"a bc d");
  EXPECT_EQ(textOfHTML(u"<b>x<i>y</b>z</i>"), u"xyz");
  EXPECT_EQ(textOfHTML(u"x<!-- <p> -->y"), u"xy");
  EXPECT_EQ(textOfHTML(u"5 < 6 > 4"), u"5 < 6 > 4");
  EXPECT_EQ(textOfHTML(u"<a title=\"x > y\">z</a>"), u"z");
}

TEST(HTMLText, WhatIsNoTextIsLeftOut) {
  EXPECT_EQ(textOfHTML(u"<script>if (a < b) x();</script>a<style>p {}</style>b<title>c</title>"), u"ab");
  EXPECT_EQ(textOfHTML(u"<html><head><title>t</title><meta charset=koi8-r></head><body>é</body></html>"),
            u"é");
  EXPECT_EQ(textOfHTML(u"<select><option>x</select>y"), u"y");
}

TEST(HTMLText, WhiteSpaceIsCollapsed) {
  EXPECT_EQ(textOfHTML(u" \n a \t\r\n  b  "), u"a b");
  EXPECT_EQ(textOfHTML(u"a <b> b</b>"), u"a b");
  EXPECT_EQ(textOfHTML(u"<p> a </p> <p> b </p>"), u"a\nb\n");
  EXPECT_EQ(textOfHTML(u"<pre>\n a\n  b</pre>c"), u" a\n  b\nc");
}

TEST(HTMLText, ParagraphsEndInALineBreak) {
  EXPECT_EQ(textOfHTML(u"<p>a</p>"), u"a\n");
  EXPECT_EQ(textOfHTML(u"<p>a<p>b"), u"a\nb\n");
  EXPECT_EQ(textOfHTML(u"a<div>b</div>c"), u"a\nb\nc");
  EXPECT_EQ(textOfHTML(u"<div><div><p>a</p></div></div><p></p>b"), u"a\nb");
  EXPECT_EQ(textOfHTML(u"<table><tr><td>1<td>2</table>3"), u"1\n2\n3");
  EXPECT_EQ(textOfHTML(u"<h1>a</h1>b"), u"a\nb");
}

TEST(HTMLText, ABreakWithinAParagraphIsALineSeparator) {
  EXPECT_EQ(textOfHTML(u"<p>a<br>b</p>"), u"a\u2028b\n");
  EXPECT_EQ(textOfHTML(u"a <br> b<br><br>c"), u"a\nb\n\nc");
}

TEST(HTMLText, ListsHaveMarks) {
  EXPECT_EQ(textOfHTML(u"<ul><li>a<li>b</ul>"), u"\t•\ta\n\t•\tb\n");
  EXPECT_EQ(textOfHTML(u"<ol><li>a<li> b <li><p>c</ol>"), u"\t1.\ta\n\t2.\tb\n\t3.\tc\n");
  EXPECT_EQ(textOfHTML(u"<ul><li>a<ul><li>b<ol><li>c</ol></ul><li>d</ul>"),
            u"\t•\ta\n\t◦\tb\n\t1.\tc\n\t•\td\n");
  EXPECT_EQ(textOfHTML(u"<ul><li></ul>x"), u"\t•\t\nx");
}

TEST(HTMLText, AnyUnitsAreText) {
  EXPECT_EQ(textOfHTML(u""), u"");
  EXPECT_EQ(textOfHTML(std::u16string_view(u"a\0b", 3)), u"ab");
  EXPECT_EQ(textOfHTML(std::u16string{u'a', 0xD800, 0xDC80 - 1, u'b', 0xDC85}),
            (std::u16string{u'a', 0xD800, 0xDC7F, u'b', 0xFFFD}))
      << "a pair, and a surrogate alone";
}

// Elements that lie in each other without end, tags that end nothing, and references that are none.
TEST(HTMLText, TakesTimeThatGrowsWithTheLengthOnly) {
  for (const std::u16string_view piece :
       {u"<b>", u"<div>", u"</i>", u"<b></i>", u"<ul><li>", u"&a", u"<!--", u"<a b=\""}) {
    const auto time = [piece](std::size_t length) {
      std::u16string html;
      while (html.size() < length) html += piece;
      const auto start = std::chrono::steady_clock::now();
      EXPECT_TRUE(textOfHTML(html));
      return std::chrono::steady_clock::now() - start;
    };
    // Ten times the length takes a hundred times as long where it grows with the square.
    EXPECT_LT(time(1'000'000), 40 * time(100'000) + std::chrono::milliseconds(200)) << piece.size();
  }
}

TEST(HTMLText, ElementsBeyondTheDeepestKeepTheirText) {
  std::u16string html, expected;
  for (int depth = 0; depth < 5000; ++depth) {
    html += u"<div>x";
    expected += u"x\n";
  }
  EXPECT_EQ(textOfHTML(html), expected);
}

TEST(HTMLReferences, GetTheirSemicolon) {
  EXPECT_EQ(withPlainReferences(u"&copy 2020 &ampx &notit; &eacute"),
            u"&copy; 2020 &amp;x &not;it; &eacute;");
  EXPECT_EQ(withPlainReferences(u"&AMP; &LTx &COPY"), u"&amp; &lt;x &copy;");
  EXPECT_EQ(withPlainReferences(u"&notin; &hellip; &apos;"), u"&notin; &hellip; &apos;");
  EXPECT_EQ(withPlainReferences(u"&hellip &apos &alpha"), u"&hellip &apos &alpha")
      << "newer names need theirs";
}

TEST(HTMLReferences, NumbersMeanWhatTheyHaveAlwaysMeant) {
  EXPECT_EQ(withPlainReferences(u"&#150;&#x93;&#x80&#129;"), u"–“€\x81");
  EXPECT_EQ(withPlainReferences(u"&#0;&#xD800;&#x110000;&#99999999999;"), u"\uFFFD\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(withPlainReferences(u"&#65;&#x41;&#60;"), u"&#65;&#x41;&#60;");
}

TEST(HTMLReferences, WhatIsNoneStays) {
  for (const std::u16string_view text :
       {u"", u"&", u"a & b", u"&;", u"&#;", u"&#x;", u"&#", u"&1", u"&bogus;", u"&&"}) {
    EXPECT_EQ(withPlainReferences(text), text);
  }
}

}  // namespace
}  // namespace kr::platform
