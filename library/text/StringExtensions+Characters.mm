#include "library/text/CodePoints.h"
#include "library/text/SkinColor.h"
#import "library/text/StringExtensions.h"
#include "library/text/VirtualCharacters.h"
#include "platform/FourCharacterCode.h"
#include "platform/KeyboardLayout.h"
#import "platform/cocoa/Bridging.h"

@implementation NSString (StringExtensionsCharacters)

- (NSUInteger)numberOfUnicodeCharacters {
  return kr::numberOfCodePoints(kr::UTF16Text(self));
}

- (uint32_t)longCharacterAtIndex:(NSUInteger)index {
  const NSUInteger length = [self length];
  if (index >= length) return 0;
  return kr::codePointAt(kr::UTF16Text(self, NSMakeRange(index, MIN(2, length - index))), 0);
}

- (void)forUTF32Characters:(void (^)(uint32_t character))block {
  const kr::UTF16Text text(self);
  kr::forEachCodePoint(text, [block](char32_t character) { block(character); });
}

- (NSString*)UTF16SequenceString {
  return kr::toNSString(kr::utf16Sequence(kr::UTF16Text(self)));
}

- (NSString*)UTF32SequenceString {
  return kr::toNSString(kr::utf32Sequence(kr::UTF16Text(self)));
}

+ (id)stringWithUTF32Character:(uint32_t)character {
  return [[[self alloc] initWithUTF32Character:character] autorelease];
}

- (id)initWithUTF32Character:(uint32_t)character {
  // Another constructor makes the string; the system's own may refuse lone surrogates.
  [[self init] release];
  return [kr::toNSString(kr::textOfCharacter(character)) retain];
}

+ (BOOL)isVirtualCharacter:(uint32_t)character {
  return kr::isVirtualCharacter(character);
}

+ (const uint32_t*)utf32CharactersForVirtualCharacter:(uint32_t)character {
  return kr::codePointsOfVirtualCharacter(character);
}

+ (void)defineLigatures:(NSArray*)ligatures {
  std::vector<std::u16string> texts;
  for (NSString* ligature in ligatures) texts.push_back(kr::toUTF16(ligature));
  kr::defineLigatures(std::move(texts));
}

+ (NSString*)stringWithVirtualKeyCode:(uint16_t)keyCode modifiers:(uint32_t)modifiers {
  const std::optional<std::u16string> text = kr::platform::textOfKey(keyCode, modifiers);
  return text ? kr::toNSString(std::u16string_view(*text)) : @"<ERR>";
}

- (NSString*)emojiStringWithSkinColor:(NSInteger)color {
  const auto result = kr::withSkinColor(kr::UTF16Text(self), color);
  return result ? kr::toNSString(std::u16string_view(*result)) : self;
}

+ (NSString*)stringWithOSType:(uint32_t)code {
  return kr::toNSString(kr::textFromCode(code));
}

@end

@implementation NSMutableString (StringExtensionsCharacters)

- (id)initWithUTF32Character:(uint32_t)character {
  [[self init] release];
  return [kr::toNSMutableString(kr::textOfCharacter(character)) retain];
}

@end
