#include "library/text/Escapes.h"

#include <gtest/gtest.h>

#include "tests/library/text/RandomTexts.h"

namespace kr {
namespace {

TEST(Escaped, TurnsControlCharactersIntoLettersAndPutsABackslashBeforeOthers) {
  EXPECT_EQ(escaped(u"a\tb", kEscapeCharacters), u"a\\tb");
  EXPECT_EQ(escaped(u"a\rb", kEscapeCharacters), u"a\\rb");
  EXPECT_EQ(escaped(u"a\nb", kEscapeCharacters), u"a\\nb");
  EXPECT_EQ(escaped(u"a\\b", kEscapeCharacters), u"a\\\\b");
  EXPECT_EQ(escaped(u"a\"b", u"\""), u"a\\\"b");
  EXPECT_EQ(escaped(u"\"", u"\""), u"\\\"");
  EXPECT_EQ(escaped(u"a😀b", u"😀"), u"a\\😀b");
  EXPECT_EQ(escaped(u"a\tb", u","), std::nullopt) << "only what is named is escaped";
}

TEST(Escaped, IsNoneWhenNoCharacterOccurs) {
  EXPECT_EQ(escaped(u"abc", kEscapeCharacters), std::nullopt);
  EXPECT_EQ(escaped(u"", kEscapeCharacters), std::nullopt);
  EXPECT_EQ(escaped(u"abc", u""), std::nullopt);
  EXPECT_EQ(escaped(u"😁", u"😀"), std::nullopt) << "the two share their first unit";
}

TEST(Escaped, UsesPlacesOfTheGivenTextInTheCopy) {
  EXPECT_EQ(escaped(u"a,b,c", u","), u"a\\,\\b,c");
  EXPECT_EQ(escaped(u"a,b,c,d", u","), u"a\\,\\b\\,c,d");
  EXPECT_EQ(escaped(u"a\tb\tc", u"\t"), u"a\\t\\b\tc");
  EXPECT_EQ(escaped(u",x\t,", u","), u"\\,x\\t,") << "the copy has the tab where the text has the comma";
}

TEST(Escaped, PassesOverTheUnitAfterAnOccurrence) {
  EXPECT_EQ(escaped(u"a,,b", u","), u"a\\,,b");
  EXPECT_EQ(escaped(u",,", u","), u"\\,,");
  EXPECT_EQ(escaped(u",,,", u","), u"\\,\\,,");
}

// The rule word by word: a text, a copy that is edited in place, and places that go from one to the other.
std::optional<std::u16string> escapedInPlace(const std::u16string& text, std::u16string_view characters) {
  std::optional<std::u16string> copy;
  for (std::size_t start = 0;;) {
    const std::size_t found = text.find_first_of(characters, start);
    if (found == std::u16string::npos) return copy;
    if (!copy) copy = text;
    const std::u16string_view letters = u"trn";
    const std::size_t control = std::u16string_view(u"\t\r\n").find((*copy)[found]);
    if (control == std::u16string_view::npos) {
      copy->insert(found, 1, u'\\');
    } else {
      copy->replace(found, 1, std::u16string{u'\\', letters[control]});
    }
    start = found + 2;
  }
}

TEST(Escaped, IsWhatEditingACopyInPlaceGives) {
  testing::RandomTexts texts(4);
  for (int round = 0; round < 20000; ++round) {
    const std::u16string text = texts.of(u"ab,;\t\n\r\\", 30);
    for (const std::u16string_view characters :
         {kEscapeCharacters, std::u16string_view(u",\t"), std::u16string_view(u"a")}) {
      ASSERT_EQ(escaped(text, characters), escapedInPlace(text, characters));
    }
  }
}

TEST(Escaped, OneOccurrenceComesBackWhenItIsExpanded) {
  testing::RandomTexts texts(5);
  for (int round = 0; round < 5000; ++round) {
    const std::u16string_view characters = round % 2 == 0 ? kEscapeCharacters : u"\t,\\;";
    std::u16string text = texts.of(u"abntr0 ", 20);
    text.insert(texts.number(text.size() + 1), 1, characters[texts.number(characters.size())]);
    const std::optional<std::u16string> there = escaped(text, characters);
    ASSERT_TRUE(there);
    ASSERT_EQ(withEscapesExpanded(*there, characters), text);
  }
}

TEST(WithEscapesExpanded, ExpandsTheEscapesOfTheCharacters) {
  EXPECT_EQ(withEscapesExpanded(u"a\\tb\\rc\\nd\\\\e", kEscapeCharacters), u"a\tb\rc\nd\\e");
  EXPECT_EQ(withEscapesExpanded(u"a\\tb\\rc\\,d", u"\t,"), u"a\tb\\rc,d");
  EXPECT_EQ(withEscapesExpanded(u"\\\"x\\\"", u"\""), u"\"x\"");
  EXPECT_EQ(withEscapesExpanded(u"\\😀", u"😀"), u"😀");
  EXPECT_EQ(withEscapesExpanded(u"\\t", u"t"), u"\t") << "a letter among the characters names its escape";
}

TEST(WithEscapesExpanded, LooksAtABackslashOnce) {
  EXPECT_EQ(withEscapesExpanded(u"\\\\n", kEscapeCharacters), u"\\n");
  EXPECT_EQ(withEscapesExpanded(u"\\\\n", u"\n"), u"\\\n") << "the first is no escape and stays";
  EXPECT_EQ(withEscapesExpanded(u"\\\\\\", kEscapeCharacters), u"\\\\");
}

TEST(WithEscapesExpanded, IsNoneWhenNothingIsExpanded) {
  EXPECT_EQ(withEscapesExpanded(u"a\\xb\\", kEscapeCharacters), std::nullopt);
  EXPECT_EQ(withEscapesExpanded(u"\\", kEscapeCharacters), std::nullopt);
  EXPECT_EQ(withEscapesExpanded(u"", kEscapeCharacters), std::nullopt);
  EXPECT_EQ(withEscapesExpanded(u"\\n", u","), std::nullopt);
  EXPECT_EQ(withEscapesExpanded(u"\\😁", u"😀"), std::nullopt);
}

TEST(WithControlEscapesExpanded, ExpandsLineFeedReturnAndTab) {
  EXPECT_EQ(withControlEscapesExpanded(u"a\\nb\\rc\\td", true), u"a\nb\rc\td");
  EXPECT_EQ(withControlEscapesExpanded(u"a\\nb\\rc\\td", false), u"a\nb\rc\td");
  EXPECT_EQ(withControlEscapesExpanded(u"\\x\\n\\\"", true), u"\\x\n\\\"");
  EXPECT_EQ(withControlEscapesExpanded(u"\\n\\", true), u"\n\\");
}

TEST(WithControlEscapesExpanded, MakesOneBackslashOfTwoOnlyWhenAskedTo) {
  EXPECT_EQ(withControlEscapesExpanded(u"\\\\n", true), u"\\n");
  EXPECT_EQ(withControlEscapesExpanded(u"\\\\n", false), std::nullopt) << "both are kept and skipped";
  EXPECT_EQ(withControlEscapesExpanded(u"\\\\\\n", false), u"\\\\\n");
  EXPECT_EQ(withControlEscapesExpanded(u"\\\\\\n", true), u"\\\n");
}

TEST(WithControlEscapesExpanded, IsNoneWhenNothingChanges) {
  for (const bool includingBackslash : {false, true}) {
    EXPECT_EQ(withControlEscapesExpanded(u"", includingBackslash), std::nullopt);
    EXPECT_EQ(withControlEscapesExpanded(u"\\", includingBackslash), std::nullopt);
    EXPECT_EQ(withControlEscapesExpanded(u"a\\xb", includingBackslash), std::nullopt);
  }
}

TEST(TextOfObjCLiteral, IsWhatStandsBetweenTheQuotes) {
  EXPECT_EQ(textOfObjCLiteral(u"@\"abc\""), u"abc");
  EXPECT_EQ(textOfObjCLiteral(u"@\"a\\\"b\\r\\n\\tc\""), u"a\"b\r\n\tc");
  EXPECT_EQ(textOfObjCLiteral(u"@\"\\x\""), u"\\x");
  EXPECT_EQ(textOfObjCLiteral(u"@\"\""), u"");
}

TEST(TextOfObjCLiteral, ReplacesTwoBackslashesBeforeAllElse) {
  EXPECT_EQ(textOfObjCLiteral(u"@\"a\\\\b\""), u"a\\b");
  EXPECT_EQ(textOfObjCLiteral(u"@\"C:\\\\new\""), u"C:\new") << "what is left begins an escape";
  EXPECT_EQ(textOfObjCLiteral(u"@\"\\\\\\n\""), u"\\\n");
}

TEST(TextOfObjCLiteral, IsEmptyForLessThanThreeUnits) {
  EXPECT_EQ(textOfObjCLiteral(u""), u"");
  EXPECT_EQ(textOfObjCLiteral(u"ab"), u"");
  EXPECT_EQ(textOfObjCLiteral(u"abc"), u"");
  EXPECT_EQ(textOfObjCLiteral(u"abcd"), u"c");
}

}  // namespace
}  // namespace kr
