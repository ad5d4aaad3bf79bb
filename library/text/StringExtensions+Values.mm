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

// Most texts differ early: of long ones a beginning is looked at first, and a longer one where it is not
// enough.
NSComparisonResult compare(NSString* one, NSString* other, Order<std::strong_ordering> order,
                           Order<std::optional<std::strong_ordering>> orderOfBeginnings) {
  constexpr NSUInteger kFirstLook = 128;
  constexpr NSUInteger kGrowth = 16;
  const NSUInteger length = [one length];
  const NSUInteger otherLength = [other length];
  for (NSUInteger look = kFirstLook; look < MAX(length, otherLength); look *= kGrowth) {
    const auto decided = orderOfBeginnings(kr::UTF16Text(one, NSMakeRange(0, MIN(look, length))),
                                           kr::UTF16Text(other, NSMakeRange(0, MIN(look, otherLength))));
    if (decided) return comparisonResult(*decided);
  }
  return comparisonResult(order(kr::UTF16Text(one), kr::UTF16Text(other)));
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
  const kr::UTF16Text text(self);
  return kr::toNSString(kr::platform::hexadecimal(kr::platform::md5(
      [&text](const kr::platform::TakeBytes& take) { kr::platform::forEachUTF8Part(text, take); })));
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
