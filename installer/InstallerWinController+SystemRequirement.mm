#import "installer/InstallerWinController.h"

#import "installer/KRInstallerInterface.h"
#import "installer/Localized.h"
#include "installer/MakerSite.h"
#import "library/utilities/KRUtilities.h"
#include "platform/Applications.h"
#include "platform/Services.h"
#import "platform/cocoa/Alerts.h"
#import "platform/cocoa/Bridging.h"

using kr::toBytes;
using kr::toDisplayText;

namespace {

constexpr const char* kStopIcon = "AlertStopIcon";
constexpr NSInteger kVisitArchive = kr::platform::kFirstAlertButton + 1;

}  // namespace

@implementation InstallerWinController (SystemRequirement)

- (NSString*)requiredSystemVersion {
  NSString* given = [self argument:KRInstallerKeyMinSystemVersion];
  return given != nil ? given : [self productText:@"LSMinimumSystemVersion"];
}

- (void)testSystemRequirement {
  NSString* required = [self requiredSystemVersion];
  systemRequirementMet = required == nil || [KRUtilities compareVersion:[KRUtilities systemVersionString]
                                                            withVersion:required] != NSOrderedAscending;
}

- (void)showSystemRequirementAlert {
  NSString* name = toDisplayText([self argument:KRInstallerKeyProductName]);
  NSString* format =
      kr::localized(@"%1$@ %2$@ cannot be installed on this computer because it requires Mac OS X "
                    @"%3$@ or newer.");
  NSString* message = [NSString stringWithFormat:format, name, toDisplayText(displayVersion),
                                                 toDisplayText([self requiredSystemVersion])];
  NSString* informative = kr::localizedFormat(
      @"To check if an older version of %@ is available for your computer, please visit our "
      @"software archive.",
      name);
  kr::platform::services().alerts->beginSheet(
      {.message = toBytes(message),
       .informative = toBytes(informative),
       .buttons = {toBytes(kr::localized(@"Quit")), toBytes(kr::localized(@"Visit Archive"))},
       .icon = kStopIcon},
      [self window], [self](id alert, NSInteger code) {
        [self systemVersionAlertDidEnd:alert returnCode:code contextInfo:nullptr];
      });
}

- (void)systemVersionAlertDidEnd:(id)alert returnCode:(NSInteger)code contextInfo:(void*)context {
  if (code == kVisitArchive) {
    (void)kr::platform::services().applications->openAddress(kr::softwareArchivePage());
  }
  [NSApp terminate:self];
}

@end
