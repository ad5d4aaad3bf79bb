// The skins over the rules of texts: what they hand over, and when the receiver itself comes back. The rules
// have tests of their own.
#import "library/text/StringExtensions.h"

#include <gmock/gmock.h>

#include "platform/Digest.h"
#include "platform/UTF8Bytes.h"
#import "platform/cocoa/Bridging.h"
#include "tests/library/text/RandomTexts.h"

namespace kr {
namespace {

using ::testing::ElementsAre;

// Autoreleases what a test makes.
class StringExtensions : public ::testing::Test {
 protected:
  ~StringExtensions() override { [pool_ drain]; }

  static std::u16string units(NSString* string) { return toUTF16(string); }
  static NSString* string(std::u16string_view units) { return toNSString(units); }
  static NSMutableString* mutableString(std::u16string_view units) { return toNSMutableString(units); }

  static std::vector<std::u16string> texts(NSArray* strings) {
    std::vector<std::u16string> list;
    for (NSString* string in strings) list.push_back(units(string));
    return list;
  }

  static bool isMutable(NSString* string) { return [string isKindOfClass:[NSMutableString class]]; }

 private:
  NSAutoreleasePool* pool_ = [[NSAutoreleasePool alloc] init];
};

using StringLines = StringExtensions;
using StringCharacters = StringExtensions;
using StringEscapes = StringExtensions;
using StringValues = StringExtensions;

TEST_F(StringLines, TrimWhitespaceGivesAMutableCopyWithoutTheSystemsWhiteSpace) {
  NSMutableString* trimmed = [@"\u3000 a b\n\u2029" trimWhitespace];
  EXPECT_EQ(units(trimmed), u"a b");
  EXPECT_TRUE(isMutable(trimmed));
  EXPECT_EQ(units([@"\x01 a" trimWhitespace]), u"\x01 a")
      << "a control character is no white space of the system's";
  NSMutableString* same = mutableString(u"a");
  EXPECT_NE([same trimWhitespace], same);
  EXPECT_EQ(units([@" \n" trimWhitespace]), u"");
  const std::u16string lone{u' ', 0xDC80, u'a', u' '};
  EXPECT_EQ(units([string(lone) trimWhitespace]), lone.substr(1, 2));
}

TEST_F(StringLines, StringByTrimmingWhitespaceTakesControlCharactersToo) {
  EXPECT_EQ(units([@"\x01\u00A0 a b\r\n" stringByTrimmingWhitespace]), u"a b");
  EXPECT_EQ(units([@"\u00A0\u00A0" stringByTrimmingWhitespace]), u"");
  for (NSString* same in @[ @"", @"a", @"a b", @"\u3000a" ]) {
    EXPECT_EQ([same stringByTrimmingWhitespace], same);
  }
  // Longer than what is looked at in one go.
  const std::u16string spaces(1000, u' ');
  for (const std::size_t length : {0U, 1U, 62U, 63U, 64U, 65U, 128U, 1000U}) {
    const std::u16string around = spaces.substr(0, length);
    EXPECT_EQ(units([string(around + u"x y" + around) stringByTrimmingWhitespace]), u"x y");
    EXPECT_EQ(units([string(around) stringByTrimmingWhitespace]), u"");
  }
}

TEST_F(StringLines, AMutableStringIsTrimmedIntoAMutableCopy) {
  NSMutableString* text = mutableString(u" a ");
  NSString* trimmed = [text stringByTrimmingWhitespace];
  EXPECT_TRUE(isMutable(trimmed));
  EXPECT_EQ(units(trimmed), u"a");
  EXPECT_EQ(units(text), u" a ");
  NSMutableString* same = mutableString(u"a");
  EXPECT_EQ([same stringByTrimmingWhitespace], same);
  EXPECT_EQ(units([mutableString(u" ") stringByTrimmingWhitespace]), u"");
}

TEST_F(StringLines, AsSingleLineIsNeverMutable) {
  EXPECT_EQ(units([@"a\nb\u200Dc\r\n" asSingleLine]), u"a b c");
  NSString* same = @"a b";
  EXPECT_EQ([same asSingleLine], same);
  EXPECT_FALSE(isMutable([mutableString(u"a b") asSingleLine]));
  EXPECT_FALSE(isMutable([mutableString(u"a\nb") asSingleLine]));
}

TEST_F(StringLines, ArrayOfLines) {
  EXPECT_THAT(texts([@"a\r\nb\nc" arrayOfLines]), ElementsAre(u"a", u"b\nc"));
  EXPECT_THAT(texts([@"" arrayOfLines]), ElementsAre(u""));
  EXPECT_THAT(texts([mutableString(u"a\n\nb") arrayOfLines]), ElementsAre(u"a", u"", u"b"));
}

TEST_F(StringLines, WithLineSeparator) {
  EXPECT_EQ(units([@"a\r\nb\rc" withLineSeparator:@"\n"]), u"a\nb\nc");
  EXPECT_EQ(units([@"a\r\nb" withLineSeparator:nil]), u"ab");
  EXPECT_FALSE(isMutable([mutableString(u"a\rb") withLineSeparator:@"\n"]));
  NSString* same = @"a\nb";
  EXPECT_EQ([same withLineSeparator:@"\n"], same);
  NSMutableString* sameMutable = mutableString(u"a\nb");
  EXPECT_EQ([sameMutable withLineSeparator:@"\n"], sameMutable);
}

TEST_F(StringLines, ComponentsSeparatedByCharacter) {
  EXPECT_THAT(texts([@"a,,b," componentsSeparatedByCharacter:',']), ElementsAre(u"a", u"", u"b"));
  EXPECT_THAT(texts([@"" componentsSeparatedByCharacter:',']), ElementsAre());
  EXPECT_THAT(texts([@"a\u2028b" componentsSeparatedByCharacter:0x2028]), ElementsAre(u"a", u"b"));
}

TEST_F(StringLines, Repeated) {
  NSString* text = @"ab";
  EXPECT_EQ(units([text repeated:0]), u"");
  EXPECT_EQ([text repeated:1], text);
  EXPECT_EQ(units([text repeated:5]), u"ababababab");
}

TEST_F(StringCharacters, CodePoints) {
  EXPECT_EQ([@"a😀b" numberOfUnicodeCharacters], 3U);
  EXPECT_EQ([@"a😀b" longCharacterAtIndex:1], 0x1F600U);
  EXPECT_EQ([@"a😀b" longCharacterAtIndex:2], 0xDE00U);
  EXPECT_EQ([@"a" longCharacterAtIndex:1], 0U);
  EXPECT_EQ(units([@"a😀" UTF16SequenceString]), u"0061,D83D,DE00");
  EXPECT_EQ(units([@"a😀" UTF32SequenceString]), u"0061,1F600");
}

TEST_F(StringCharacters, ForUTF32CharactersCallsInOrder) {
  std::vector<uint32_t>* seen = new std::vector<uint32_t>;
  const std::u16string text{u'a', 0xD83D, 0xDE00, 0xD83D, u'x', 0xDC80, 0xD83D};
  [string(text) forUTF32Characters:^(uint32_t character) {
    seen->push_back(character);
  }];
  EXPECT_THAT(*seen, ElementsAre('a', 0x1F600U, 0xDC80U));
  delete seen;
}

TEST_F(StringCharacters, StringWithUTF32CharacterIsOfTheClassThatIsAsked) {
  for (const uint32_t character : {0x61U, 0xD800U, 0x1F600U, 0xA0000U, 0xA0300U, 0xA1000U}) {
    NSString* text = [NSString stringWithUTF32Character:character];
    NSMutableString* changeable = [NSMutableString stringWithUTF32Character:character];
    EXPECT_EQ(units(text), units(changeable));
    EXPECT_FALSE(isMutable(text));
    ASSERT_TRUE(isMutable(changeable));
    [changeable appendString:@"x"];
    EXPECT_EQ(units(changeable), units(text) + u"x");
    NSString* made = [[NSString alloc] initWithUTF32Character:character];
    EXPECT_EQ(units(made), units(text));
    [made release];
  }
  EXPECT_EQ(units([NSString stringWithUTF32Character:0xD800]), std::u16string{0xD800});
  EXPECT_EQ(units([NSString stringWithUTF32Character:0xA0300]), u"\U0001F441\uFE0F\u200D\U0001F5E8\uFE0F");
}

TEST_F(StringCharacters, VirtualCharacters) {
  EXPECT_TRUE([NSString isVirtualCharacter:0xA0000]);
  EXPECT_TRUE([NSString isVirtualCharacter:0xBFFFE]);
  EXPECT_FALSE([NSString isVirtualCharacter:0xBFFFF]);
  const uint32_t* flag = [NSString utf32CharactersForVirtualCharacter:0xA0000 + 26 * 3 + 4];
  EXPECT_EQ(flag[0], 0x1F1E9U);
  EXPECT_EQ(flag[1], 0x1F1EAU);
  EXPECT_EQ(flag[2], 0U);
  EXPECT_EQ([NSString utf32CharactersForVirtualCharacter:0xB0000], nullptr);
}

TEST_F(StringCharacters, DefinedLigaturesAreACopy) {
  NSMutableArray* ligatures = [NSMutableArray arrayWithObjects:@"ffi", mutableString(u"st"), nil];
  [NSString defineLigatures:ligatures];
  [[ligatures objectAtIndex:1] appendString:@"x"];
  [ligatures removeAllObjects];
  EXPECT_EQ(units([NSString stringWithUTF32Character:0xB0000]), u"ffi");
  EXPECT_EQ(units([NSString stringWithUTF32Character:0xB0001]), u"st");
  [NSString defineLigatures:nil];
  EXPECT_EQ(units([NSString stringWithUTF32Character:0xB0000]), u"\U000B0000");
}

TEST_F(StringCharacters, EmojiStringWithSkinColor) {
  NSString* waving = @"👋🏻";
  EXPECT_EQ([waving emojiStringWithSkinColor:2], waving);
  EXPECT_EQ(units([waving emojiStringWithSkinColor:6]), u"👋🏿");
  EXPECT_EQ(units([waving emojiStringWithSkinColor:0]), u"👋");
  EXPECT_EQ([@"" emojiStringWithSkinColor:3], @"");
}

TEST_F(StringCharacters, StringWithVirtualKeyCode) {
  EXPECT_EQ(units([NSString stringWithVirtualKeyCode:0x24 modifiers:0]), u"\r");
  EXPECT_EQ(units([NSString stringWithVirtualKeyCode:0x38 modifiers:0]), u"");
  EXPECT_EQ(units([NSString stringWithVirtualKeyCode:0x100 modifiers:0]), u"<ERR>");
}

TEST_F(StringCharacters, StringWithOSType) {
  EXPECT_EQ(units([NSString stringWithOSType:0x6D6F6F56]), u"mooV");
  EXPECT_EQ(units([NSString stringWithOSType:0xA5A5A5CA]), u"•••\u00A0");
}

TEST_F(StringEscapes, PercentEscapes) {
  EXPECT_EQ(units([@"a b%20c#d" stringWithPercentEscapes]), u"a%20b%20c#d");
  EXPECT_EQ(units([@"%C3%A9" stringWithExpandedPercentEscapes]), u"é");
  for (NSString* same in @[ @"100%", @"%zz", @"abc", @"" ]) {
    EXPECT_EQ([same stringWithPercentEscapes], same);
    EXPECT_EQ([same stringWithExpandedPercentEscapes], same);
  }
}

TEST_F(StringEscapes, HTMLEntities) {
  EXPECT_EQ(units([@"&lt;caf&eacute;&gt; <b>x</b>" stringByExpandingHTMLEntities]), u"<café> x");
  for (NSString* same in @[ @"", @"abc", @"a b" ]) EXPECT_EQ([same stringByExpandingHTMLEntities], same);
}

TEST_F(StringEscapes, Backslashes) {
  EXPECT_EQ(units(KREscapeCharacters), u"\n\r\t\\");
  EXPECT_EQ(units([@"a\tb" stringByEscapingCharacters:KREscapeCharacters]), u"a\\tb");
  EXPECT_EQ(units([@"a\\tb\\\\" stringByExpandingEscapedCharacters:KREscapeCharacters]), u"a\tb\\");
  EXPECT_EQ(units([@"a\\tb\\\\n" stringByExpandingEscapedControlCharacters]), u"a\tb\\n");
  EXPECT_EQ(units([@"a\\tb\\\\n" stringByExpandingEscapedControlCharactersIncludingBackslash:NO]),
            u"a\tb\\\\n");
  NSString* same = @"abc";
  EXPECT_EQ([same stringByEscapingCharacters:KREscapeCharacters], same);
  EXPECT_EQ([same stringByEscapingCharacters:nil], same);
  EXPECT_EQ([same stringByExpandingEscapedCharacters:KREscapeCharacters], same);
  EXPECT_EQ([same stringByExpandingEscapedControlCharacters], same);
}

TEST_F(StringEscapes, ControlCharactersAreExpandedInPlace) {
  NSMutableString* text = mutableString(u"a\\nb\\\\");
  EXPECT_FALSE([mutableString(u"\\\\") expandEscapedControlCharactersIncludingBackslash:NO]);
  EXPECT_TRUE([text expandEscapedControlCharactersIncludingBackslash:NO]);
  EXPECT_EQ(units(text), u"a\nb\\\\");
  EXPECT_TRUE([text expandEscapedControlCharactersIncludingBackslash:YES]);
  EXPECT_EQ(units(text), u"a\nb\\");
  EXPECT_FALSE([text expandEscapedControlCharactersIncludingBackslash:YES]);
  EXPECT_FALSE([mutableString(u"\\") expandEscapedControlCharactersIncludingBackslash:YES]);
}

TEST_F(StringEscapes, ObjCLiterals) {
  EXPECT_EQ(units([NSString stringWithObjCString:@"@\"a\\n\""]), u"a\n");
  EXPECT_EQ(units([NSString stringWithObjCString:@"@\""]), u"");
  EXPECT_EQ(units([NSString stringWithObjCString:nil]), u"");
  NSString* literal = @"@\"x\"";
  EXPECT_EQ([NSString objCStringWithString:literal], literal);
}

TEST_F(StringValues, Numbers) {
  EXPECT_EQ([@"0x20" numericValue], 32);
  EXPECT_TRUE([@"yes" booleanValue]);
  EXPECT_FALSE([@"no" booleanValue]);
  EXPECT_TRUE([@"12" isIntegerNumber]);
  EXPECT_FALSE([@"" isIntegerNumber]);
  EXPECT_FLOAT_EQ([@"1.234,5" smartFloatValue], 1234.5F);
}

TEST_F(StringValues, MD5StringIsThatOfTheUTF8Bytes) {
  EXPECT_EQ(units([@"" MD5String]), u"d41d8cd98f00b204e9800998ecf8427e");
  EXPECT_EQ(units([@"abc" MD5String]), u"900150983cd24fb0d6963f7d28e17f72");
  EXPECT_EQ(units([@"é" MD5String]), u"66ddcd97cfdeabb2f6fb8a999b4bc76f");
}

// Wherever the parts that a text is digested in end.
TEST_F(StringValues, MD5StringOfALongTextIsThatOfAllItsBytes) {
  for (const std::size_t length : {4090U, 4094U, 4095U, 4096U, 4097U, 12287U, 100000U}) {
    const std::u16string text = std::u16string(length, u'x') + u"😀é日" + std::u16string(length, u'é');
    EXPECT_EQ(toBytes([string(text) MD5String]),
              platform::hexadecimal(platform::md5(platform::bytesFromUTF16(text))))
        << length;
  }
}

TEST_F(StringValues, XmlElementForKey) {
  EXPECT_EQ(units([@"<a>1</a>" xmlElementForKey:@"a"]), u"1");
  EXPECT_EQ([@"<a>1" xmlElementForKey:@"a"], nil);
}

TEST_F(StringValues, NumericCompare) {
  EXPECT_EQ([@"a9" numericCompare:@"a10"], NSOrderedAscending);
  EXPECT_EQ([@"a10" numericCompare:@"a9"], NSOrderedDescending);
  EXPECT_EQ([@"a10" numericCompare:@"a010"], NSOrderedSame);
  EXPECT_EQ([@"B" numericCompare:@"a"], NSOrderedAscending);
  EXPECT_EQ([@"B9" caseInsensitiveNumericCompare:@"a10"], NSOrderedDescending);
  EXPECT_EQ([@"ABC10" caseInsensitiveNumericCompare:@"abc10"], NSOrderedSame);
  EXPECT_EQ([@"ABC10" casdInsensitiveNumericCompare:@"abc10"], NSOrderedSame);
  EXPECT_EQ([@"B9" casdInsensitiveNumericCompare:@"a10"], NSOrderedDescending);
  EXPECT_EQ([@"a" numericCompare:nil], NSOrderedDescending);
}

// What is compared grows in steps; wherever a text differs, the step is the same.
TEST_F(StringValues, LongTextsCompareAsShortOnesDo) {
  const std::u16string_view ends[] = {u"", u"1", u"9", u"10", u"a", u"010x", u"B"};
  for (const std::size_t length : {0U, 120U, 126U, 127U, 128U, 129U, 2047U, 2048U, 2049U, 40000U}) {
    const std::u16string start(length, u'x');
    for (const std::u16string_view one : ends) {
      for (const std::u16string_view other : ends) {
        EXPECT_EQ([string(start + std::u16string(one)) numericCompare:string(start + std::u16string(other))],
                  [string(u"x" + std::u16string(one)) numericCompare:string(u"x" + std::u16string(other))]);
      }
    }
    const std::u16string digits(length, u'4');
    EXPECT_EQ([string(digits + u"9") numericCompare:string(digits + u"10")], NSOrderedAscending);
    EXPECT_EQ([string(digits + u"9x") caseInsensitiveNumericCompare:string(digits + u"9X")], NSOrderedSame);
  }
}

TEST_F(StringValues, MatchesWildcardPattern) {
  EXPECT_TRUE([@"abc" matchesWildcardPattern:@"a*c"]);
  EXPECT_TRUE([@"abc" matchesWildcardPattern:@"*"]);
  EXPECT_FALSE([@"abc" matchesWildcardPattern:@"a*b*c*d"]);
  EXPECT_TRUE([@"" matchesWildcardPattern:nil]);
}

TEST_F(StringExtensions, AnyTextGoesThroughEveryOperation) {
  testing::RandomTexts random(10);
  for (int round = 0; round < 500; ++round) {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    NSString* text = string(random.any(200));
    NSString* other = round % 2 == 0 ? string(random.any(5)) : mutableString(random.any(5));
    ASSERT_NE(text, nil);
    NSArray* results = @[
      [text trimWhitespace], [text stringByTrimmingWhitespace], [text asSingleLine], [text arrayOfLines],
      [text withLineSeparator:other], [text componentsSeparatedByCharacter:'\n'], [text repeated:3],
      [text UTF16SequenceString], [text UTF32SequenceString], [text emojiStringWithSkinColor:round % 8],
      [text stringWithPercentEscapes], [text stringWithExpandedPercentEscapes],
      [text stringByEscapingCharacters:other], [text stringByExpandingEscapedCharacters:other],
      [text stringByExpandingEscapedControlCharacters], [text stringByExpandingHTMLEntities],
      [NSString stringWithObjCString:text], [text MD5String]
    ];
    EXPECT_EQ([results count], 18U) << "none of them is nil";
    [text numericValue];
    [text booleanValue];
    [text smartFloatValue];
    [text xmlElementForKey:other];
    EXPECT_EQ([text numericCompare:text], NSOrderedSame);
    EXPECT_EQ([text caseInsensitiveNumericCompare:text], NSOrderedSame);
    [text matchesWildcardPattern:other];
    [pool drain];
  }
}

}  // namespace
}  // namespace kr
