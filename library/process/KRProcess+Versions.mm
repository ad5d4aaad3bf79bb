#import "library/process/KRProcess+Private.h"
#include "library/process/VersionResource.h"
#include "library/process/VersionRules.h"
#include "library/text/LeadingNumbers.h"
#include "platform/ProcessTable.h"
#import "platform/cocoa/Bridging.h"
#import "platform/cocoa/PropertyLists.h"

namespace {

NSString* const kUnknownVersion = @"1.0";

// A marketing version without a dot says too little; then the build version counts.
NSString* versionIn(NSDictionary* information) {
  id marketing = [information objectForKey:@"CFBundleShortVersionString"];
  if ([marketing isKindOfClass:[NSString class]] && [marketing rangeOfString:@"."].location != NSNotFound) {
    return marketing;
  }
  id build = [information objectForKey:@"CFBundleVersion"];
  return [build isKindOfClass:[NSString class]] ? build : nil;
}

}  // namespace

@implementation KRProcess (Versions)

- (NSString*)carbonVersion {
  const std::optional<std::string> resource = kr::processTable().versionResource(psn);
  return resource ? kr::toNSString(kr::versionFromResource(*resource)) : nil;
}

- (NSString*)foundVersion {
  if (![self getProcessInfo] || [self path] == nil) return nil;
  if ([self bundle] == nil) return [self carbonVersion];
  return versionIn(kr::bundleInfoDictionary(kr::toBytes([self path])));
}

- (NSString*)version {
  @synchronized(self) {
    if (version == nil) {
      NSString* found = [self foundVersion];
      version = [found != nil ? found : kUnknownVersion retain];
    }
    return version;
  }
}

- (int)majorVersionNumber {
  return kr::leadingInteger(kr::toBytes([self version]));
}

- (BOOL)isAtLeastVersion:(NSString*)wanted {
  return kr::isAtLeastVersion(kr::toBytes([self version]), kr::toBytes(wanted));
}

@end
