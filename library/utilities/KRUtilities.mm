#import "library/utilities/KRUtilities.h"

#include "platform/Applications.h"
#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"

@implementation KRUtilities

+ (void)openFile:(NSString*)path {
  kr::platform::services().applications->openInBackground(kr::toBytes(path));
}

@end
