#import "installer/InstallerWinController.h"

#include "installer/PrivilegedCopy.h"
#import "platform/cocoa/Bridging.h"

using kr::toBytes;

@implementation InstallerWinController (PrivilegedCopy)

- (BOOL)authorizedInstall:(NSString*)source
                       to:(NSString*)destination
                     wrap:(NSString*)wrapper
                 canceled:(BOOL*)canceled {
  const kr::PrivilegedCopy copy{.source = toBytes(source),
                                .destination = toBytes(destination),
                                .wrapper = kr::toOptionalBytes(wrapper),
                                .tool = toBytes([[NSBundle mainBundle] pathForResource:@"train" ofType:@""])};
  bool dismissed = false;
  const bool copied = kr::copyWithAuthorization(
      copy, [self](bool start) { [self animateOnMainThread:start ? @"YES" : nil]; }, &dismissed);
  if (canceled != nullptr) *canceled = dismissed;
  return copied;
}

@end
