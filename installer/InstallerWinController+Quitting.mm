#import "installer/InstallerWinController.h"

#import "installer/KRInstallerInterface.h"
#import "library/process/KRProcess.h"
#include "library/process/SignatureText.h"
#include "platform/Clock.h"
#include "platform/FourCharacterCode.h"
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

// Whether the process is a running copy that has to quit. The installer never is, and neither is a program
// without a signature: to take a code that says "none" at its word would end every such program of the
// session.
- (BOOL)mustQuit:(KRProcess*)process {
  const uint32_t code = [process signature];
  return kr::isSignature(code) && [self signature:code isInArray:[self codes:KRInstallerKeyQuitCode]] &&
         ![process isEqual:[KRProcess currentProcess]];
}

- (void)quitProcesses {
  for (KRProcess* process in [KRProcess allProcesses]) {
    if (![self mustQuit:process]) continue;
    kr::log("Quitting '%@': %@", toBytes([process signatureString]), kr::toOptionalBytes([process name]));
    [process quit];
    kr::platform::services().clock->sleep(kBetweenRequests);
  }
}

- (NSString*)processToQuitStillRunning {
  for (KRProcess* process in [KRProcess allProcesses]) {
    if (![self mustQuit:process]) continue;
    kr::log("Still running '%@': %@", toBytes([process signatureString]),
            kr::toOptionalBytes([process name]));
    return [process name];
  }
  return nil;
}

@end
