#import "installer/InstallerWinController.h"

#include "installer/InstallApplication.h"
#import "installer/KRInstallerInterface.h"
#import "installer/Localized.h"
#include "installer/QuitCopies.h"
#include "platform/Applications.h"
#include "platform/Log.h"
#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"

using kr::toBytes;

namespace {

NSString* gInstallationInProgress;

}  // namespace

@implementation InstallerWinController (Installing)

+ (NSString*)installationInProgress {
  @synchronized([InstallerWinController class]) {
    return [[gInstallationInProgress retain] autorelease];
  }
}

+ (void)setInstallationInProgress:(NSString*)tag {
  @synchronized([InstallerWinController class]) {
    [gInstallationInProgress autorelease];
    gInstallationInProgress = [tag copy];
  }
}

- (void)finishOnMainThread:(NSString*)failure {
  [self performSelectorOnMainThread:@selector(installationFinished:) withObject:failure waitUntilDone:NO];
}

- (void)animateOnMainThread:(NSString*)start {
  [self performSelectorOnMainThread:@selector(animateProgress:) withObject:start waitUntilDone:NO];
}

- (void)installThread {
  @autoreleasepool {
    NSString* productName = [self argument:KRInstallerKeyProductName];
    kr::log("Install");
    [self animateOnMainThread:@"YES"];

    const auto refused = kr::quitRunningCopies(
        {.askToQuit = [self] { [self quitProcesses]; },
         .stillRunning = [self] { return kr::toOptionalBytes([self processToQuitStillRunning]); }});
    if (refused) {
      [self finishOnMainThread:kr::localizedFormat(@"%1$@ cannot be running during the installation.\r"
                                                   @"Quit %1$@, then click \"Install\" again.",
                                                   kr::toNSString(refused))];
      return;
    }

    NSString* failure = [self installMyselfInDestination];
    if ([failure length] > 0) failure = [self failureText:failure forProduct:productName];
    [self finishOnMainThread:failure];
  }
}

// A product that comes alone can also be copied by hand; one with a wrapper cannot.
- (NSString*)failureText:(NSString*)key forProduct:(NSString*)productName {
  NSString* text = kr::localizedFormat(key, productName);
  if ([self argument:KRInstallerKeyWrapperPath] != nil) return text;
  NSString* hint = kr::localizedFormat(
      @"Try installing %1$@ manually by copying it to the Applications folder.", productName);
  return [text stringByAppendingFormat:@"\r%@", hint];
}

- (NSString*)installMyselfInDestination {
  NSString* destination = [self argument:KRInstallerKeyDestinationPath];
  const BOOL writable = [self canWriteToPath:destination];
  [InstallerWinController
      setInstallationInProgress:[NSString stringWithFormat:@"%@ %@",
                                                           [self argument:KRInstallerKeyProductName],
                                                           [self argument:KRInstallerKeyVersion]]];
  if (!writable) {
    kr::log("ERROR -- Could not copy myself to /Applications with authorization");
    return @"Authorized copying failed.";
  }
  switch (kr::InstallApplication(toBytes([self argument:KRInstallerKeySourcePath]), toBytes(destination),
                                 kr::toOptionalBytes([self argument:KRInstallerKeyWrapperPath]))) {
    case kr::kInstalled:
      break;
    case kr::kExistingCopyNotTrashed:
      return @"Could not delete existing copy.";
    default:
      return @"Installation failed.";
  }
  kr::log("successfully copied");
  @try {
    kr::platform::services().applications->noteFileSystemChanged(toBytes(destination));
  } @catch (NSException* exception) {
    kr::log("EXCEPTION @ noteFileSystemChanged: %@", toBytes([exception description]));
  }
  [self launchInstalledProduct:destination];
  return nil;
}

@end
