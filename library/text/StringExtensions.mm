#import "library/text/StringExtensions.h"
#include "library/text/Lines.h"
#include "library/text/Whitespace.h"
#import "platform/cocoa/Bridging.h"

namespace {

using Count = std::size_t (*)(std::u16string_view);

// The range between what the two functions count at the ends. Only the ends of the text are looked at.
NSRange rangeBetween(NSString* string, Count leading, Count trailing) {
  constexpr NSUInteger kLook = 64;
  NSUInteger start = 0;
  NSUInteger end = [string length];
  if (end <= kLook) {
    const kr::UTF16Text text(string, NSMakeRange(0, end));
    start = leading(text);
    return NSMakeRange(start, end - start - trailing(text.view().substr(start)));
  }
  while (start < end) {
    const NSUInteger length = MIN(kLook, end - start);
    const std::size_t removed = leading(kr::UTF16Text(string, NSMakeRange(start, length)));
    start += removed;
    if (removed < length) break;
  }
  while (start < end) {
    const NSUInteger length = MIN(kLook, end - start);
    const std::size_t removed = trailing(kr::UTF16Text(string, NSMakeRange(end - length, length)));
    end -= removed;
    if (removed < length) break;
  }
  return NSMakeRange(start, end - start);
}

// Most texts have nothing to remove, which their first and last unit tell.
bool isTrimmed(NSString* string) {
  const NSUInteger length = [string length];
  return length == 0 || (!kr::isWhitespace([string characterAtIndex:0]) &&
                         !kr::isWhitespace([string characterAtIndex:length - 1]));
}

// The parts of the text, which are views into its units, as strings.
NSMutableArray* substrings(NSString* string, std::u16string_view units,
                           const std::vector<std::u16string_view>& parts, NSMutableArray* array) {
  for (const std::u16string_view part : parts) {
    const auto start = static_cast<NSUInteger>(part.data() - units.data());
    [array addObject:[string substringWithRange:NSMakeRange(start, part.size())]];
  }
  return array;
}

}  // namespace

@implementation NSString (StringExtensions)

- (NSMutableString*)trimWhitespace {
  const NSRange range = rangeBetween(self, kr::leadingSystemWhitespace, kr::trailingSystemWhitespace);
  return kr::toNSMutableString(kr::UTF16Text(self, range));
}

- (NSString*)stringByTrimmingWhitespace {
  if (isTrimmed(self)) return self;
  return [self substringWithRange:rangeBetween(self, kr::leadingWhitespace, kr::trailingWhitespace)];
}

- (NSString*)asSingleLine {
  const auto result = kr::asSingleLine(kr::UTF16Text(self));
  // A copy of what cannot be changed is the receiver.
  return result ? kr::toNSString(std::u16string_view(*result)) : [[self copy] autorelease];
}

- (NSArray*)arrayOfLines {
  const kr::UTF16Text text(self);
  const std::vector<std::u16string_view> lines = kr::lines(text);
  return substrings(self, text, lines, [NSMutableArray arrayWithCapacity:lines.size()]);
}

- (NSString*)withLineSeparator:(NSString*)separator {
  const auto result = kr::withLineSeparator(kr::UTF16Text(self), kr::UTF16Text(separator));
  return result ? kr::toNSString(std::u16string_view(*result)) : self;
}

- (NSArray*)componentsSeparatedByCharacter:(unichar)separator {
  const kr::UTF16Text text(self);
  return substrings(self, text, kr::pieces(text, static_cast<char16_t>(separator)),
                    [NSMutableArray arrayWithCapacity:[self length] / 10]);
}

- (NSString*)repeated:(NSInteger)count {
  return count == 1 ? self : kr::toNSString(kr::repeated(kr::UTF16Text(self), count));
}

@end

@implementation NSMutableString (StringExtensions)

- (NSString*)stringByTrimmingWhitespace {
  if (isTrimmed(self)) return self;
  const NSRange range = rangeBetween(self, kr::leadingWhitespace, kr::trailingWhitespace);
  return kr::toNSMutableString(kr::UTF16Text(self, range));
}

@end
