#include "installer/Handshake.h"

#import "installer/InstallerWinController.h"

#include "platform/Log.h"
#import "platform/cocoa/AppleEventHandlers.h"
#import "platform/cocoa/Bridging.h"

@implementation InstallerWinController (Handshake)

- (void)installAppleEvents {
  kr::platform::setAppleEventHandler(self, @selector(installationDone:withReplyEvent:), kr::kDoneEventClass,
                                     kr::kDoneEventID);
  kr::log("AppleEvents installed");
}

- (void)installationDone:(NSAppleEventDescriptor*)event withReplyEvent:(NSAppleEventDescriptor*)reply {
  const auto text = kr::toOptionalBytes(kr::platform::directText(event));
  const auto tag = kr::toOptionalBytes([InstallerWinController installationInProgress]);
  if (!kr::confirmsInstallation(text, tag)) return;
  [self performSelectorOnMainThread:@selector(installationFinished:) withObject:nil waitUntilDone:NO];
}

@end
