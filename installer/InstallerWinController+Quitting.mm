#import "installer/InstallerWinController.h"

#import "installer/KRInstallerInterface.h"
#import "library/process/KRProcess.h"
#include "library/process/SignatureText.h"
#include "platform/Clock.h"
#include "platform/Log.h"
#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"

using kr::toBytes;

namespace {

constexpr double kBetweenRequests = 0.1;

}  // namespace

@implementation InstallerWinController (Quitting)

- (BOOL)signature:(uint32_t)code isInArray:(NSArray*)signatures {
  for (const std::string& text : kr::toByteStrings(signatures)) {
    if (kr::signatureFromText(text) == code) return YES;
  }
  return NO;
}

// The running copies, in the order of the process list. The installer is never one of them.
- (NSArray*)processesToQuit {
  NSArray* quitCodes = [self codes:KRInstallerKeyQuitCode];
  NSMutableArray* matching = [NSMutableArray array];
  if (quitCodes == nil) return matching;
  KRProcess* installer = [KRProcess currentProcess];
  for (KRProcess* process in [KRProcess allProcesses]) {
    if ([self signature:[process signature] isInArray:quitCodes] && ![process isEqual:installer]) {
      [matching addObject:process];
    }
  }
  return matching;
}

- (void)quitProcesses {
  for (KRProcess* process in [self processesToQuit]) {
    kr::log("Quitting '%@': %@", toBytes([process signatureString]), kr::toOptionalBytes([process name]));
    [process quit];
    kr::platform::services().clock->sleep(kBetweenRequests);
  }
}

- (NSString*)processToQuitStillRunning {
  NSArray* running = [self processesToQuit];
  if ([running count] == 0) return nil;
  KRProcess* process = [running objectAtIndex:0];
  kr::log("Still running '%@': %@", toBytes([process signatureString]), kr::toOptionalBytes([process name]));
  return [process name];
}

@end
