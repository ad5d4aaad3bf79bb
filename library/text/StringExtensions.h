// Further operations of every string. None raises for what a text holds. A new string is autoreleased; where
// nothing changes the receiver itself comes back, so that a caller can compare the two pointers. Positions
// and lengths count UTF-16 units. nil for a text argument is the empty text. Any thread, save where it says
// otherwise.
#pragma once

#import <Foundation/Foundation.h>

#include <cstdint>

// White space is every unit below 33 (control characters and the space) and U+00A0 here, save in
// -trimWhitespace and -asSingleLine.
@interface NSString (StringExtensions)

// A copy without the white space that the system's own trimming removes at both ends.
- (NSMutableString*)trimWhitespace;

- (NSString*)stringByTrimmingWhitespace;

// Every control character (also a format character such as U+200D) becomes a space; then both ends are
// trimmed as -trimWhitespace does.
- (NSString*)asSingleLine;

// Split by "\r\n" where the text holds one, else by "\n" where it holds one, else by "\r".
- (NSArray*)arrayOfLines;

// Every line break replaced. Three searches one after the other, for "\r\n", "\r" and "\n", without that for
// the separator itself; a later one finds what an earlier one has put in, so with "\r\n" for the separator a
// "\r\n" of the text becomes "\r\r\n\r\n". That is meant.
- (NSString*)withLineSeparator:(NSString*)separator;

// Empty pieces are there too, but none after a final separator.
- (NSArray*)componentsSeparatedByCharacter:(unichar)separator;

// The empty text for counts below 1.
- (NSString*)repeated:(NSInteger)count;

@end

@interface NSMutableString (StringExtensions)

// A mutable copy where something was removed.
- (NSString*)stringByTrimmingWhitespace;

@end

// Code points, and virtual characters that stand for several of them: library/text/VirtualCharacters.h lists
// the ranges.
@interface NSString (StringExtensionsCharacters)

- (NSUInteger)numberOfUnicodeCharacters;

// A lone surrogate as it is; 0 beyond the end.
- (uint32_t)longCharacterAtIndex:(NSUInteger)index;

// A high surrogate without its low one is skipped together with the unit behind it; a lone low one is passed.
- (void)forUTF32Characters:(void (^)(uint32_t character))block;

// Units, and code points as above, as hexadecimal digits with commas between them.
- (NSString*)UTF16SequenceString;
- (NSString*)UTF32SequenceString;

// What a virtual character stands for, else the units of the code point.
+ (id)stringWithUTF32Character:(uint32_t)character;
- (id)initWithUTF32Character:(uint32_t)character;

+ (BOOL)isVirtualCharacter:(uint32_t)character;

// Ended by a zero; null for ligatures and what is no virtual character. Those of a flag stand in one buffer
// for all callers, which the next call overwrites: use them on one thread.
+ (const uint32_t*)utf32CharactersForVirtualCharacter:(uint32_t)character;

// The texts of the virtual characters from 0xB0000 on. Before they are used.
+ (void)defineLigatures:(NSArray*)ligatures;

// The text that the key produces in the current keyboard layout with the modifiers of a Carbon event held
// down (shift is 2, caps lock 4, option 8, control 16); "<ERR>" where that cannot be told. On the main
// thread.
+ (NSString*)stringWithVirtualKeyCode:(uint16_t)keyCode modifiers:(uint32_t)modifiers;

// Colours 1 to 6, from light to dark, of which 1 and 2 are the same; another number takes the colour away.
- (NSString*)emojiStringWithSkinColor:(NSInteger)color;

// Four characters of the Mac Roman character set.
+ (NSString*)stringWithOSType:(uint32_t)code;

@end

@interface NSMutableString (StringExtensionsCharacters)

- (id)initWithUTF32Character:(uint32_t)character;

@end

@interface NSString (StringExtensionsEncodings)

// Of the class that is asked. Without a length the bytes end at the first zero.
+ (id)stringWithMacRomanCString:(const char*)bytes;
+ (id)stringWithMacRomanCString:(const char*)bytes length:(NSUInteger)length;

// That of the byte-order mark; the default where there is none or the file cannot be read.
+ (NSStringEncoding)explicitEncodingOfFile:(NSString*)path defaultEncoding:(NSStringEncoding)defaultEncoding;

// In the encoding of the mark, else as the system takes it, else of "Unicode", "MacRoman", "Latin1" and
// "UTF8" the one whose text is the most plausible. The mark is no part of the text. nil when the file cannot
// be read.
+ (NSString*)stringWithBestEncodingFromFile:(NSString*)path;

// How likely the text was decoded in the right encoding, at most 1; the name does not count. That of an empty
// text is no number.
- (float)reasonableTextFactor:(NSString*)encodingName;

// The source text of an HTML document, in the encoding that it names, else in ISO Latin-1.
+ (NSString*)stringWithHTML:(NSData*)data;

// Puts the text at the end of a file, which is created where there is none. NO when it cannot be written or
// the text has no such encoding.
- (BOOL)appendToFile:(NSString*)path encoding:(NSStringEncoding)encoding;

@end

@interface NSMutableString (StringExtensionsEncodings)

+ (id)stringWithMacRomanCString:(const char*)bytes length:(NSUInteger)length;

@end

// Line feed, carriage return, tab and backslash.
extern NSString* const KREscapeCharacters;

@interface NSString (StringExtensionsEscapes)

// The plain text of HTML: without tags, with the characters that its references stand for, white space
// collapsed, and a line for each paragraph. On the main thread.
- (NSString*)stringByExpandingHTMLEntities;

// As for a URL: escapes that are there are undone first, so that nothing is escaped twice, and "#" stays. The
// receiver when it has a malformed escape.
- (NSString*)stringWithPercentEscapes;
- (NSString*)stringWithExpandedPercentEscapes;

// A backslash before each of the characters; tab, return and line feed become their letters. The places are
// searched in the receiver but used in the copy, which grows with every edit: from the second one on an edit
// comes too early. That is meant: library/text/Escapes.h has examples.
- (NSString*)stringByEscapingCharacters:(NSString*)characters;

// The other way round; the characters are those that the escapes produce.
- (NSString*)stringByExpandingEscapedCharacters:(NSString*)characters;

- (NSString*)stringByExpandingEscapedControlCharactersIncludingBackslash:(BOOL)includingBackslash;
- (NSString*)stringByExpandingEscapedControlCharacters;

// The text that a literal of Objective-C source code stands for, from its at-sign to its last quote.
+ (NSString*)stringWithObjCString:(NSString*)literal;

// The argument.
+ (NSString*)objCStringWithString:(NSString*)string;

@end

@interface NSMutableString (StringExtensionsEscapes)

// In place: "\n", "\r" and "\t", and where it is asked for a pair of backslashes. Whether anything changed.
- (BOOL)expandEscapedControlCharactersIncludingBackslash:(BOOL)includingBackslash;

@end

@interface NSString (StringExtensionsValues)

// As strtol reads it, with the base that the prefix tells.
- (long)numericValue;

// YES for a first character of "TtYy1", else whether the integer at the start is not 0.
- (BOOL)booleanValue;

- (BOOL)isIntegerNumber;

// With a comma or a point for the decimal separator: the one that comes later.
- (float)smartFloatValue;

// Of the UTF-8 bytes, in lower-case hexadecimal digits.
- (NSString*)MD5String;

// The text between the first "<key>" and the next "</key>"; nil when one is missing.
- (NSString*)xmlElementForKey:(NSString*)key;

// Runs of digits by their value, all else by character. The last one is a name that callers know.
- (NSComparisonResult)numericCompare:(NSString*)other;
- (NSComparisonResult)caseInsensitiveNumericCompare:(NSString*)other;
- (NSComparisonResult)casdInsensitiveNumericCompare:(NSString*)other;

// "*" stands for any run of characters. Case counts.
- (BOOL)matchesWildcardPattern:(NSString*)pattern;

@end

@interface NSString (StringExtensionsRegex)

// With the word boundaries of Unicode. In the template "$" and a number stand for what a group has matched,
// and a backslash takes the next character literally. A bad pattern is logged and gives the receiver.
- (NSString*)stringByReplacingOccurrencesOfRegexPattern:(NSString*)pattern
                                           withTemplate:(NSString*)replacement;

@end
