#include "library/text/Escapes.h"
#include "library/text/PercentEscapes.h"
#import "library/text/StringExtensions.h"
#include "platform/HTMLText.h"
#import "platform/cocoa/Bridging.h"

NSString* const KREscapeCharacters = @"\n\r\t\\";

namespace {

// The receiver where a rule says that nothing changes.
NSString* changed(NSString* receiver, const std::optional<std::u16string>& result) {
  return result ? kr::toNSString(std::u16string_view(*result)) : receiver;
}

// The same for a rule that has no answer of its own for that.
NSString* changed(NSString* receiver, std::u16string_view before,
                  const std::optional<std::u16string>& result) {
  return result && *result == before ? receiver : changed(receiver, result);
}

}  // namespace

@implementation NSString (StringExtensionsEscapes)

- (NSString*)stringByExpandingHTMLEntities {
  const kr::UTF16Text text(self);
  return changed(self, text, kr::platform::textOfHTML(text));
}

- (NSString*)stringWithPercentEscapes {
  const kr::UTF16Text text(self);
  return changed(self, text, kr::withPercentEscapes(text));
}

- (NSString*)stringWithExpandedPercentEscapes {
  const kr::UTF16Text text(self);
  return changed(self, text, kr::withPercentEscapesExpanded(text));
}

- (NSString*)stringByEscapingCharacters:(NSString*)characters {
  return changed(self, kr::escaped(kr::UTF16Text(self), kr::UTF16Text(characters)));
}

- (NSString*)stringByExpandingEscapedCharacters:(NSString*)characters {
  return changed(self, kr::withEscapesExpanded(kr::UTF16Text(self), kr::UTF16Text(characters)));
}

- (NSString*)stringByExpandingEscapedControlCharactersIncludingBackslash:(BOOL)includingBackslash {
  return changed(self, kr::withControlEscapesExpanded(kr::UTF16Text(self), includingBackslash));
}

- (NSString*)stringByExpandingEscapedControlCharacters {
  return [self stringByExpandingEscapedControlCharactersIncludingBackslash:YES];
}

+ (NSString*)stringWithObjCString:(NSString*)literal {
  return kr::toNSString(kr::textOfObjCLiteral(kr::UTF16Text(literal)));
}

+ (NSString*)objCStringWithString:(NSString*)string {
  return string;
}

@end

@implementation NSMutableString (StringExtensionsEscapes)

- (BOOL)expandEscapedControlCharactersIncludingBackslash:(BOOL)includingBackslash {
  const auto result = kr::withControlEscapesExpanded(kr::UTF16Text(self), includingBackslash);
  if (!result) return NO;
  [self setString:kr::toNSString(std::u16string_view(*result))];
  return YES;
}

@end
