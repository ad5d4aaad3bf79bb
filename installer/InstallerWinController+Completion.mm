#import "installer/InstallerWinController.h"

#import "installer/KRInstallerInterface.h"
#include "installer/LaunchArguments.h"
#import "installer/Localized.h"
#include "platform/Log.h"
#import "platform/cocoa/Bridging.h"

@implementation InstallerWinController (Completion)

- (void)showFinalMessage:(NSString*)format {
  [cancelButton setHidden:YES];
  [installButton setTitle:kr::localized(@"OK")];
  [pathField setHidden:YES];
  [explanationField setHidden:YES];
  [messageField setHidden:YES];
  [helpButton setHidden:YES];
  [introField setStringValue:kr::localizedFormat(format, [self argument:KRInstallerKeyProductName])];
  finished = YES;
}

- (void)installationFinished:(NSString*)failure {
  if (failure != nil) {
    [messageField setStringValue:failure];
    [cancelButton setEnabled:YES];
  } else {
    [self showFinalMessage:@"%@ was successfully installed."];
    [checkmarkField setHidden:NO];
    [cancelButton setHidden:YES];
    [cancelButton setEnabled:NO];
    if (![[NSUserDefaults standardUserDefaults] boolForKey:@"nosound"]) [self playDoneSound];
  }
  [installButton setEnabled:YES];
  [self animateProgress:nil];
  [self quitAfterDelay];
}

// Also after a failure: whoever asked for the delay does not want the window to stay.
- (void)quitAfterDelay {
  NSString* text = [self argument:KRInstallerCompletionQuit];
  if (text == nil) return;
  const float delay = kr::secondsFromText(kr::toBytes(text));
  kr::log("quit delay: %1.1f", delay);
  if (delay > 0) [NSApp performSelector:@selector(terminate:) withObject:self afterDelay:delay];
}

@end
