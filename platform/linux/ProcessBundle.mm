#include "platform/linux/ProcessBundle.h"

#import <Foundation/Foundation.h>

#include "platform/FourCharacterCode.h"
#include "platform/Paths.h"
#import "platform/cocoa/Bridging.h"
#import "platform/cocoa/PropertyLists.h"

namespace kr::platform {
namespace {

// The text under the key; none when there is none or an empty one.
std::optional<std::string> text(NSDictionary* dictionary, NSString* key) {
  id value = [dictionary objectForKey:key];
  if (![value isKindOfClass:[NSString class]] || [value length] == 0) return std::nullopt;
  return toBytes(value);
}

std::string serialised(NSDictionary* dictionary) {
  @try {
    NSData* data = [NSPropertyListSerialization dataWithPropertyList:dictionary
                                                              format:NSPropertyListXMLFormat_v1_0
                                                             options:0
                                                               error:nullptr];
    return {static_cast<const char*>([data bytes]), [data length]};
  } @catch (NSException*) {
    return {};
  }
}

// A property list holds text only; a path that is none is left out.
void setPath(NSMutableDictionary* dictionary, NSString* key, const std::string& path) {
  NSString* string = [[[NSString alloc] initWithBytes:path.data()
                                               length:path.size()
                                             encoding:NSUTF8StringEncoding] autorelease];
  if (string != nil) [dictionary setObject:string forKey:key];
}

std::string information(NSDictionary* bundleDictionary, const ProcessLocation& location, pid_t pid) {
  NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
  if (bundleDictionary != nil) [dictionary addEntriesFromDictionary:bundleDictionary];
  [dictionary setObject:[NSNumber numberWithInt:pid] forKey:@"pid"];
  setPath(dictionary, @"CFBundleExecutable", location.executable);
  if (location.bundle) setPath(dictionary, @"BundlePath", *location.bundle);
  return serialised(dictionary);
}

}  // namespace

ProcessFacts processFacts(const ProcessLocation& location, pid_t pid) {
  @autoreleasepool {
    NSDictionary* dictionary = location.bundle ? bundleInfoDictionary(*location.bundle) : nil;
    const std::string fileName(location.bundle
                                   ? paths::withoutExtension(paths::lastComponent(*location.bundle))
                                   : paths::lastComponent(location.executable));
    ProcessFacts facts;
    const std::optional<std::string> signature = text(dictionary, @"CFBundleSignature");
    facts.signature = signature ? codeFromText(*signature).value_or(kNoSignature) : kNoSignature;
    facts.name = text(dictionary, @"CFBundleName").value_or(fileName);
    facts.displayName = text(dictionary, @"CFBundleDisplayName").value_or(facts.name);
    facts.information = information(dictionary, location, pid);
    return facts;
  }
}

}  // namespace kr::platform
