#import "library/utilities/KRUtilities.h"

#include "library/utilities/PackedText.h"
#include "platform/Log.h"
#import "platform/cocoa/Bridging.h"

namespace {

NSString* const kThemeChanged = @"AppleInterfaceThemeChangedNotification";
constexpr NSTimeInterval kProcessWatcherDelay = 1.0;
constexpr uint32_t kIconFileType = 'i' % 32 | 'c' % 32 << 5 | 'n' % 32 << 10 | 's' % 32 << 15;

bool gInitialized = false;

NSString* mainBundleText(NSString* key) {
  id value = [[[NSBundle mainBundle] infoDictionary] objectForKey:key];
  return [value isKindOfClass:[NSString class]] ? value : @"";
}

}  // namespace

@implementation KRUtilities

// Whoever sends the first message to the class is no place for an exception to end up.
+ (void)initialize {
  @try {
    @synchronized(self) {
      if (!gInitialized) {
        [self performSelector:@selector(installProcessWatcher)
                   withObject:nil
                   afterDelay:kProcessWatcherDelay];
        [[NSDistributedNotificationCenter defaultCenter] addObserver:self
                                                            selector:@selector(darkModeChanged:)
                                                                name:kThemeChanged
                                                              object:nil];
        gInitialized = true;
        kr::log("**Utilities initialized");
      }
    }
  } @catch (NSException* exception) {
    kr::log("EXCEPTION @ initialize: %@", kr::toBytes([exception description]));
  }
}

+ (NSString*)applicationName {
  return mainBundleText(@"CFBundleExecutable");
}

+ (NSString*)versionString {
  return mainBundleText(@"CFBundleVersion");
}

+ (NSString*)localizedDateString:(NSString*)day {
  if (day == nil) return nil;
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"
  NSDate* midnight = [NSDate dateWithString:[day stringByAppendingString:@" 00:00:00 +0000"]];
#pragma clang diagnostic pop
  if (midnight == nil) return nil;
  NSDateFormatter* formatter = [[[NSDateFormatter alloc] init] autorelease];
  [formatter setLocale:[NSLocale currentLocale]];
  [formatter setDateStyle:NSDateFormatterShortStyle];
  [formatter setTimeStyle:NSDateFormatterNoStyle];
  return [formatter stringFromDate:midnight];
}

+ (NSUInteger)appType {
  NSString* type = kr::toNSString(kr::unpackedText(kIconFileType));
  return [[[NSBundle mainBundle] pathsForResourcesOfType:type inDirectory:nil] count];
}

@end
