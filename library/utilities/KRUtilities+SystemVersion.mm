#import "library/utilities/KRUtilities.h"
#include "library/utilities/RunningSystem.h"
#include "library/utilities/SystemLevels.h"
#import "platform/cocoa/Bridging.h"

using kr::isOfLevel;
using kr::SystemLevel;

@implementation KRUtilities (SystemVersion)

+ (uint32_t)hexSystemVersion {
  return kr::hexSystemVersion();
}

+ (KRThreePartVersion)threePartVersion {
  const kr::ThreePartVersion version = kr::threePartVersion();
  return {version.major, version.minor, version.bugfix};
}

+ (uint32_t)decimalSystemVersion {
  return kr::decimalSystemVersion();
}

+ (NSString*)systemVersionString {
  return kr::toNSString(kr::systemVersionString());
}

+ (BOOL)pantherOrOlder {
  return isOfLevel(SystemLevel::pantherOrOlder);
}

+ (BOOL)leopardOrNewer {
  return isOfLevel(SystemLevel::leopardOrNewer);
}

+ (BOOL)snowleopardOrNewer {
  return isOfLevel(SystemLevel::snowleopardOrNewer);
}

+ (BOOL)lionOrNewer {
  return isOfLevel(SystemLevel::lionOrNewer);
}

+ (BOOL)mountainLionOrNewer {
  return isOfLevel(SystemLevel::mountainLionOrNewer);
}

+ (BOOL)mavericksOrNewer {
  return isOfLevel(SystemLevel::mavericksOrNewer);
}

+ (BOOL)yosemiteOrNewer {
  return isOfLevel(SystemLevel::yosemiteOrNewer);
}

+ (BOOL)elCapitanOrNewer {
  return isOfLevel(SystemLevel::elCapitanOrNewer);
}

+ (BOOL)sierraOrNewer {
  return isOfLevel(SystemLevel::sierraOrNewer);
}

+ (BOOL)highSierraOrNewer {
  return isOfLevel(SystemLevel::highSierraOrNewer);
}

+ (BOOL)mojaveOrNewer {
  return isOfLevel(SystemLevel::mojaveOrNewer);
}

+ (BOOL)catalinaOrNewer {
  return isOfLevel(SystemLevel::catalinaOrNewer);
}

@end
