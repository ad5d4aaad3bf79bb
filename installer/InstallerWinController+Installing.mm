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

constexpr NSUInteger kOptionModifier = 0x80000;

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

- (void)addCurrentModifiersTo:(NSMutableArray*)list {
  [list addObject:[NSNumber numberWithUnsignedInteger:[[NSApp currentEvent] modifierFlags]]];
}

// Whether the user holds Option on Install. The event is asked on the main thread, which may let go of it at
// any time.
- (BOOL)isAuthorizationEnforced {
  NSMutableArray* modifiers = [NSMutableArray array];
  [self performSelectorOnMainThread:@selector(addCurrentModifiersTo:) withObject:modifiers waitUntilDone:YES];
  return ([[modifiers lastObject] unsignedIntegerValue] & kOptionModifier) != 0;
}

// The two copies answer nil, or the key of a failure text.
- (NSString*)copyTo:(NSString*)destination {
  switch (kr::InstallApplication(toBytes([self argument:KRInstallerKeySourcePath]), toBytes(destination),
                                 kr::toOptionalBytes([self argument:KRInstallerKeyWrapperPath]))) {
    case kr::kInstalled:
      return nil;
    case kr::kExistingCopyNotTrashed:
      return @"Could not delete existing copy.";
    default:
      return @"Installation failed.";
  }
}

- (NSString*)copyWithAuthorizationTo:(NSString*)destination {
  BOOL canceled = NO;
  if ([self authorizedInstall:[self argument:KRInstallerKeySourcePath]
                           to:destination
                         wrap:[self argument:KRInstallerKeyWrapperPath]
                     canceled:&canceled]) {
    return nil;
  }
  if (canceled) {
    kr::log("User canceled authorization");
    return @"";
  }
  kr::log("ERROR -- Could not copy myself to /Applications with authorization");
  return @"Authorized copying failed.";
}

- (NSString*)installMyselfInDestination {
  NSString* destination = [self argument:KRInstallerKeyDestinationPath];
  const BOOL writable = [self canWriteToPath:destination];
  [InstallerWinController
      setInstallationInProgress:[NSString stringWithFormat:@"%@ %@",
                                                           [self argument:KRInstallerKeyProductName],
                                                           [self argument:KRInstallerKeyVersion]]];
  const BOOL enforced = [self isAuthorizationEnforced];
  if (enforced) kr::log("enforcing authorization");
  NSString* failure =
      writable && !enforced ? [self copyTo:destination] : [self copyWithAuthorizationTo:destination];
  if (failure != nil) return failure;
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
