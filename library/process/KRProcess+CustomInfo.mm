#import "library/process/KRProcess.h"

namespace {

constexpr NSUInteger kExpectedEntries = 5;

}  // namespace

@implementation KRProcess (CustomInfo)

- (id)infoForKey:(NSString*)key {
  if (key == nil) return nil;
  @synchronized(self) {
    return [[[customInfo objectForKey:key] retain] autorelease];
  }
}

- (void)setInfo:(id)object forKey:(NSString*)key {
  if (key == nil) return;
  @synchronized(self) {
    if (customInfo == nil) customInfo = [[NSMutableDictionary alloc] initWithCapacity:kExpectedEntries];
    if (object != nil) {
      [customInfo setObject:object forKey:key];
    } else {
      [customInfo removeObjectForKey:key];
    }
  }
}

- (id)info {
  return [self infoForKey:@""];
}

- (void)setInfo:(id)object {
  [self setInfo:object forKey:@""];
}

@end
