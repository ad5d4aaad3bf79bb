#include <cstring>

#include "library/text/CodePoints.h"
#include "library/text/Numbers.h"
#include "library/text/NumericOrder.h"
#import "library/text/StringExtensions.h"
#include "library/text/Wildcards.h"
#include "library/text/XMLElement.h"
#include "platform/Digest.h"
#include "platform/UTF8Bytes.h"
#import "platform/cocoa/Bridging.h"

namespace {

NSComparisonResult comparisonResult(std::strong_ordering order) {
  if (order == 0) return NSOrderedSame;
  return order < 0 ? NSOrderedAscending : NSOrderedDescending;
}

template <class Text>
using Order = Text (*)(std::u16string_view, std::u16string_view);

constexpr NSUInteger kLook = 128;

// How many units the texts begin with that are the same, taken back to the start of a number or a pair of
// surrogates that the difference may lie in. Not to the last unit: most of it is looked at in parts.
NSUInteger equalBeginning(NSString* one, NSString* other, NSUInteger length) {
  NSUInteger start = 0;
  while (start + kLook <= length) {
    const NSRange part = NSMakeRange(start, kLook);
    const kr::UTF16Text these(one, part);
    const kr::UTF16Text those(other, part);
    if (std::memcmp(these.view().data(), those.view().data(), kLook * sizeof(char16_t)) != 0) break;
    start += kLook;
  }
  const auto mayGoOn = [](char16_t unit) {
    return (unit >= '0' && unit <= '9') || kr::isHighSurrogate(unit);
  };
  while (start > 0 && mayGoOn(static_cast<char16_t>([one characterAtIndex:start - 1]))) --start;
  return start;
}

// Of long texts what they both begin with is passed over, and then a beginning of the rest is compared first,
// and a longer one where that is not enough.
NSComparisonResult compare(NSString* one, NSString* other, Order<std::strong_ordering> order,
                           Order<std::optional<std::strong_ordering>> orderOfBeginnings) {
  constexpr NSUInteger kGrowth = 16;
  const NSUInteger length = [one length];
  const NSUInteger otherLength = [other length];
  const NSUInteger start = equalBeginning(one, other, MIN(length, otherLength));
  const NSUInteger rest = length - start;
  const NSUInteger otherRest = otherLength - start;
  for (NSUInteger look = kLook; look < MAX(rest, otherRest); look *= kGrowth) {
    const auto decided = orderOfBeginnings(kr::UTF16Text(one, NSMakeRange(start, MIN(look, rest))),
                                           kr::UTF16Text(other, NSMakeRange(start, MIN(look, otherRest))));
    if (decided) return comparisonResult(*decided);
  }
  return comparisonResult(order(kr::UTF16Text(one, NSMakeRange(start, rest)),
                                kr::UTF16Text(other, NSMakeRange(start, otherRest))));
}

}  // namespace

@implementation NSString (StringExtensionsValues)

- (long)numericValue {
  return kr::numericValue(kr::UTF16Text(self));
}

- (BOOL)booleanValue {
  return kr::booleanValue(kr::UTF16Text(self));
}

- (BOOL)isIntegerNumber {
  return kr::isIntegerNumber(kr::UTF16Text(self));
}

- (float)smartFloatValue {
  return kr::smartFloatValue(kr::UTF16Text(self));
}

- (NSString*)MD5String {
  const auto digest = kr::platform::md5([self](const kr::platform::TakeBytes& take) {
    kr::forEachPart(self, [&take](std::u16string_view part) { kr::platform::forEachUTF8Part(part, take); });
  });
  return kr::toNSString(kr::platform::hexadecimal(digest));
}

- (NSString*)xmlElementForKey:(NSString*)key {
  const kr::UTF16Text text(self);
  const auto element = kr::xmlElement(text, kr::UTF16Text(key));
  return element ? kr::toNSString(*element) : nil;
}

- (NSComparisonResult)numericCompare:(NSString*)other {
  return compare(self, other, kr::numericOrder, kr::numericOrderOfBeginnings);
}

- (NSComparisonResult)caseInsensitiveNumericCompare:(NSString*)other {
  return compare(self, other, kr::caseInsensitiveNumericOrder, kr::caseInsensitiveNumericOrderOfBeginnings);
}

- (NSComparisonResult)casdInsensitiveNumericCompare:(NSString*)other {
  return [self caseInsensitiveNumericCompare:other];
}

- (BOOL)matchesWildcardPattern:(NSString*)pattern {
  return kr::matchesWildcards(kr::UTF16Text(self), kr::UTF16Text(pattern));
}

@end
