#import "installer/InstallerWinController.h"

#include "installer/InstallApplication.h"
#import "installer/KRInstallerInterface.h"
#import "installer/Localized.h"
#include "installer/QuitCopies.h"
#include "platform/Applications.h"
#include "platform/Log.h"
#include "platform/Services.h"
#include "platform/UnfinishedWork.h"
#import "platform/cocoa/Bridging.h"

using kr::toBytes;

namespace {

NSString* gInstallationInProgress;

// Conditions of a question to the main thread, and how long it may take until it is looked whether it is
// there.
constexpr NSInteger kAsked = 0;
constexpr NSInteger kAnswered = 1;
constexpr NSTimeInterval kPatience = 0.5;

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
  const kr::platform::UnfinishedWork work;
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

- (void)readOption:(NSConditionLock*)question {
  optionIsHeld = ([[NSApp currentEvent] modifierFlags] & kr::kOptionModifier) != 0;
  [question lock];
  [question unlockWithCondition:kAnswered];
}

// Whether the user holds Option on Install. The event is asked on the main thread, which may let go of it at
// any time. One that has lost its window answers no more, and nobody holds anything.
- (BOOL)isAuthorizationEnforced {
  NSConditionLock* question = [[[NSConditionLock alloc] initWithCondition:kAsked] autorelease];
  // The main thread itself answers at once.
  [self performSelectorOnMainThread:@selector(readOption:)
                         withObject:question
                      waitUntilDone:[NSThread isMainThread]];
  while (![question lockWhenCondition:kAnswered beforeDate:[NSDate dateWithTimeIntervalSinceNow:kPatience]]) {
    if (kr::platform::UnfinishedWork::isLeftAlone()) return NO;
  }
  [question unlock];
  return optionIsHeld;
}

// The two copies answer nil, or the key of a failure text.
- (NSString*)failureOfCopyTo:(NSString*)destination {
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

- (NSString*)failureOfAuthorizedCopyTo:(NSString*)destination {
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
  NSString* failure = writable && !enforced ? [self failureOfCopyTo:destination]
                                            : [self failureOfAuthorizedCopyTo:destination];
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
