#import "library/utilities/KRUtilities.h"

#include "library/utilities/VersionOrder.h"
#import "platform/cocoa/Bridging.h"

NSUInteger developmentStage(unichar letter) {
  return kr::developmentStage(static_cast<char16_t>(letter));
}

@implementation KRUtilities (Versions)

+ (NSString*)plainVersionOf:(NSString*)version {
  const std::u16string text = kr::toUTF16(version);
  return kr::toNSString(kr::plainVersion(text));
}

+ (NSString*)plainVersionString {
  return [self plainVersionOf:[self versionString]];
}

+ (NSComparisonResult)compareVersion:(NSString*)version withVersion:(NSString*)other {
  const std::weak_ordering order = kr::versionOrder(kr::toUTF16(version), kr::toUTF16(other));
  if (order < 0) return NSOrderedAscending;
  return order > 0 ? NSOrderedDescending : NSOrderedSame;
}

@end
