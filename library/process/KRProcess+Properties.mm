#include "library/process/HashStringSource.h"
#import "library/process/KRProcess+Private.h"
#include "library/process/SignatureText.h"
#include "platform/ProcessTable.h"
#import "platform/cocoa/Bridging.h"
#import "platform/cocoa/PropertyLists.h"

using kr::processTable;
using kr::toNSString;

NSString* const KRPlatformCocoa = @"Cocoa";
NSString* const KRPlatformCarbon = @"Carbon";
NSString* const KRPlatformJava = @"Java";

namespace {

enum CocoaStatus : uint32_t { kUnknown = 0, kCocoa = 1, kNotCocoa = 2 };

// Cocoa raises where a path holds bytes that are no text.
NSBundle* bundleAt(NSString* path) {
  if (path == nil) return nil;
  @try {
    return [NSBundle bundleWithPath:path];
  } @catch (NSException*) {
    return nil;
  }
}

NSImage* iconOf(NSString* path) {
  if (path == nil) return nil;
  @try {
    return [[NSWorkspace sharedWorkspace] iconForFile:path];
  } @catch (NSException*) {
    return nil;
  }
}

BOOL isTrue(id value) {
  return [value respondsToSelector:@selector(boolValue)] && [value boolValue];
}

}  // namespace

// What is kept is fetched under the object's own lock: the install thread asks, too. Texts are retained and
// not copied: a path may hold bytes that are no text, and Cocoa does not copy the string that stands for it.
@implementation KRProcess (Properties)

- (BOOL)getProcessInfo {
  @synchronized(self) {
    if (name != nil) return YES;
    const std::optional<kr::platform::ProcessRecord> record = processTable().record(psn);
    if (!record) return NO;
    signature = record->signature;
    name = [toNSString(record->name) retain];
    return YES;
  }
}

- (pid_t)unixPID {
  return processTable().pid(psn).value_or(0);
}

- (NSString*)name {
  return [self getProcessInfo] ? name : nil;
}

- (NSString*)displayName {
  @synchronized(self) {
    if (displayName == nil) {
      NSString* shown = toNSString(processTable().displayName(psn));
      displayName = [shown != nil ? shown : [self name] retain];
    }
    return displayName;
  }
}

- (uint32_t)signature {
  return [self getProcessInfo] ? signature : 0;
}

- (NSString*)signatureString {
  return [self getProcessInfo] ? toNSString(kr::textFromSignature(signature)) : @"";
}

- (NSString*)signatureHexString {
  return toNSString(kr::hexTextFromSignature([self signature]));
}

- (NSDictionary*)infoDictionary {
  @synchronized(self) {
    if (infoDictionary == nil) {
      infoDictionary = [kr::propertyListDictionary(processTable().information(psn).value_or("")) retain];
    }
    return infoDictionary;
  }
}

- (NSString*)path {
  @synchronized(self) {
    if (path == nil) path = [toNSString(processTable().bundleLocation(psn)) retain];
    return path;
  }
}

- (NSBundle*)bundle {
  return bundleAt([self path]);
}

- (NSString*)identifier {
  id value = [[self infoDictionary] objectForKey:@"CFBundleIdentifier"];
  return [value isKindOfClass:[NSString class]] ? value : @"";
}

- (NSString*)hashStringSource {
  return toNSString(kr::hashStringSource(kr::toBytes([self identifier]), kr::toBytes([self signatureString]),
                                         kr::toBytes([self name])));
}

- (NSString*)hashString {
  return toNSString(kr::hashString(kr::toBytes([self hashStringSource])));
}

- (NSImage*)icon {
  @synchronized(self) {
    if (icon == nil) icon = [iconOf([self path]) retain];
    return icon;
  }
}

- (BOOL)isFrontProcess {
  return [self isEqual:[KRProcess frontProcess]];
}

- (BOOL)isBackgroundOnly {
  NSDictionary* information = [self infoDictionary];
  return isTrue([information objectForKey:@"LSBackgroundOnly"]) ||
         isTrue([information objectForKey:@"LSUIElement"]);
}

- (BOOL)namesPrincipalClass {
  const std::optional<std::string> place = processTable().bundleLocation(psn);
  if (!place || !processTable().isNativePackage(psn)) return NO;
  if (bundleAt(toNSString(*place)) == nil) return NO;
  id principalClass = [kr::bundleInfoDictionary(*place) objectForKey:@"NSPrincipalClass"];
  return [principalClass isKindOfClass:[NSString class]];
}

- (BOOL)isCocoa {
  @synchronized(self) {
    if (cocoaStatus == kUnknown) cocoaStatus = [self namesPrincipalClass] ? kCocoa : kNotCocoa;
    return cocoaStatus == kCocoa;
  }
}

- (NSString*)platform {
  if ([self isCocoa]) return KRPlatformCocoa;
  const bool isJava = kr::toBytes([self identifier]).find(".java") != std::string::npos;
  return isJava ? KRPlatformJava : KRPlatformCarbon;
}

- (BOOL)isStillRunning {
  return processTable().pid(psn).has_value();
}

@end
