#import "library/process/KRProcess+Private.h"
#include "library/process/MostRecentlyUsed.h"
#import "library/process/Retained.h"

using kr::Retained;
using kr::platform::SerialNumber;

namespace {

// Only under the class lock.
kr::MostRecentlyUsed<Retained<KRProcess>>& cachedProcesses() {
  // Never freed: objects may be looked up until the very end of the program.
  static auto* cache = new kr::MostRecentlyUsed<Retained<KRProcess>>;
  return *cache;
}

std::optional<std::size_t> indexOf(SerialNumber serialNumber) {
  return cachedProcesses().find(
      [&](const Retained<KRProcess>& entry) { return [entry.get() isSameProcess:serialNumber] != NO; });
}

}  // namespace

@implementation KRProcess (Cache)

+ (NSUInteger)indexOfCachedProcessWithSerialNumber:(SerialNumber)serialNumber {
  const std::lock_guard lock(kr::processClassLock());
  return indexOf(serialNumber).value_or(NSNotFound);
}

+ (KRProcess*)cachedProcessWithSerialNumber:(SerialNumber)serialNumber {
  const std::lock_guard lock(kr::processClassLock());
  const std::optional<std::size_t> index = indexOf(serialNumber);
  if (!index) return nil;
  // The caller may use it while another thread cleans the cache up.
  return [[cachedProcesses().use(*index).get() retain] autorelease];
}

- (void)addToCache {
  const std::lock_guard lock(kr::processClassLock());
  cachedProcesses().add(Retained<KRProcess>(self));
}

+ (void)cleanupCache {
  const std::lock_guard lock(kr::processClassLock());
  cachedProcesses().remove([](const Retained<KRProcess>& entry) { return ![entry.get() isStillRunning]; });
}

+ (NSEnumerator*)cachedProcessesEnumerator {
  const std::lock_guard lock(kr::processClassLock());
  if (!cachedProcesses().exists()) return nil;
  NSMutableArray* entries = [NSMutableArray array];
  for (const Retained<KRProcess>& entry : cachedProcesses().entries()) [entries addObject:entry.get()];
  return [entries objectEnumerator];
}

@end
