#import "library/process/KRProcess.h"

#include "library/process/DiagnosticsList.h"
#import "library/process/KRProcess+Private.h"
#include "library/process/SignatureText.h"
#include "platform/ProcessEvents.h"
#include "platform/ProcessTable.h"
#include "platform/Services.h"
#include "platform/WindowOrder.h"
#import "platform/cocoa/Bridging.h"

using kr::platform::SerialNumber;

namespace {

// The running program's own object, once it was asked for. Never released.
KRProcess* current = nil;

bool standsBefore(const std::string& one, const std::string& other) {
  return [kr::toNSString(one) caseInsensitiveCompare:kr::toNSString(other)] == NSOrderedAscending;
}

}  // namespace

namespace kr {

std::recursive_mutex& processClassLock() {
  static std::recursive_mutex lock;
  return lock;
}

platform::ProcessTable& processTable() {
  return *platform::services().processes;
}

std::optional<std::string> nameForLog(KRProcess* process) {
  return toOptionalBytes([process name]);
}

}  // namespace kr

@implementation KRProcess

- (id)initWithSerialNumber:(SerialNumber)serialNumber {
  [KRProcess installNotifications];
  self = [super init];
  if (self != nil) psn = serialNumber;
  return self;
}

- (void)dealloc {
  [self unregisterAXNotifications];
  [name release];
  [displayName release];
  [path release];
  [infoDictionary release];
  [customInfo release];
  [version release];
  [launchDate release];
  [icon release];
  [super dealloc];
}

+ (KRProcess*)processWithSerialNumber:(SerialNumber)serialNumber {
  const std::lock_guard lock(kr::processClassLock());
  KRProcess* process = [self cachedProcessWithSerialNumber:serialNumber];
  if (process != nil) return process;
  process = [[[self alloc] initWithSerialNumber:serialNumber] autorelease];
  [process addToCache];
  // Whether or not the system has told of it, the cache has to learn of its end.
  kr::platform::services().processEvents->learn(serialNumber);
  return process;
}

+ (KRProcess*)processWithPID:(pid_t)pid {
  const std::optional<SerialNumber> serialNumber = kr::processTable().forPID(pid);
  return serialNumber ? [self processWithSerialNumber:*serialNumber] : nil;
}

+ (KRProcess*)processWithSignature:(uint32_t)code {
  [self installNotifications];
  for (const SerialNumber serialNumber : kr::processTable().all()) {
    const std::optional<kr::platform::ProcessRecord> record = kr::processTable().record(serialNumber);
    if (record && record->signature == code) return [self processWithSerialNumber:serialNumber];
  }
  return nil;
}

+ (KRProcess*)processWithSignatureString:(NSString*)text {
  return [self processWithSignature:kr::signatureFromText(kr::toBytes(text))];
}

+ (KRProcess*)processWithIdentifier:(NSString*)bundleIdentifier {
  [self installNotifications];
  for (KRProcess* process in [self allProcesses]) {
    if ([[process identifier] isEqual:bundleIdentifier]) return process;
  }
  return nil;
}

+ (KRProcess*)currentProcess {
  const std::lock_guard lock(kr::processClassLock());
  if (current != nil) return current;
  [self installNotifications];
  const std::optional<SerialNumber> serialNumber = kr::processTable().current();
  if (serialNumber) current = [[self processWithSerialNumber:*serialNumber] retain];
  return current;
}

+ (KRProcess*)frontProcess {
  const std::optional<SerialNumber> serialNumber = kr::platform::services().windowOrder->front();
  return serialNumber ? [self processWithSerialNumber:*serialNumber] : nil;
}

+ (NSArray*)allProcesses {
  [self installNotifications];
  NSMutableArray* list = [NSMutableArray array];
  for (const SerialNumber serialNumber : kr::processTable().all()) {
    [list addObject:[self processWithSerialNumber:serialNumber]];
  }
  return [NSArray arrayWithArray:list];
}

+ (NSString*)processListForDiagnosticsReport {
  std::vector<std::string> foreground;
  std::vector<std::string> background;
  for (KRProcess* process in [self allProcesses]) {
    std::vector<std::string>& list = [process isBackgroundOnly] ? background : foreground;
    list.push_back(kr::toBytes([process detailedDescription]));
  }
  return kr::toNSString(kr::processListText(std::move(foreground), std::move(background), standsBefore));
}

- (SerialNumber)serialNumber {
  return psn;
}

- (BOOL)isSameProcess:(SerialNumber)serialNumber {
  return kr::processTable().same(psn, serialNumber);
}

- (BOOL)isEqual:(id)object {
  if (object == self) return YES;
  if (![object isKindOfClass:[KRProcess class]]) return NO;
  return [self isSameProcess:[static_cast<KRProcess*>(object) serialNumber]];
}

- (NSUInteger)hash {
  return static_cast<uint32_t>(psn.high + psn.low);
}

- (NSComparisonResult)compare:(KRProcess*)other {
  NSString* own = [self name];
  NSString* others = [other name];
  return [own != nil ? own : @"" caseInsensitiveCompare:others != nil ? others : @""];
}

- (NSString*)description {
  return [NSString
      stringWithFormat:@"Process \"%@\" (%@) %@", [self name], [self signatureString], [self version]];
}

- (NSString*)detailedDescription {
  return [NSString stringWithFormat:@"%@ V%@ (%@/%@)", [self name], [self version], [self signatureString],
                                    [self identifier]];
}

@end
