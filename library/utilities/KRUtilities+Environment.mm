#import "library/utilities/KRUtilities.h"

#include "library/utilities/Environment.h"
#include "library/utilities/RunningSystem.h"
#include "library/utilities/SafeAddress.h"
#include "platform/Launcher.h"
#include "platform/Program.h"
#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"

namespace {

NSString* const kFirstSystemKey = @"httpsMinSys";

std::optional<std::int64_t> firstSystemSetting() {
  id value = [[NSUserDefaults standardUserDefaults] objectForKey:kFirstSystemKey];
  if (![value respondsToSelector:@selector(integerValue)]) return std::nullopt;
  return [value integerValue];
}

}  // namespace

@implementation KRUtilities (Environment)

+ (BOOL)runningFromDistributionDisk {
  return kr::runsFromDistributionDisk();
}

+ (BOOL)installationMode {
  return kr::isInInstallationMode();
}

+ (NSString*)resolvedAlias:(NSString*)path {
  const std::string given = kr::toBytes(path);
  const std::string target = kr::resolvedAlias(given);
  return target == given ? path : kr::toNSString(target);
}

+ (NSString*)fileSystemTypeFor:(NSString*)path {
  return kr::toNSString(kr::fileSystemType(kr::toBytes(path)));
}

+ (BOOL)wasLaunchedByProcess:(NSString*)creatorCode {
  const std::optional<std::string> launcher = kr::platform::services().launcher->signature();
  return creatorCode != nil && launcher == kr::toBytes(creatorCode);
}

+ (BOOL)wasLaunchedAsLoginItem {
  return [self wasLaunchedByProcess:kr::toNSString(std::string_view(kr::platform::kLoginItemLauncher))];
}

+ (NSString*)safeHTTPS:(NSString*)address {
  const kr::UTF16Text text(address);
  const auto changed = kr::addressWithoutSecureHTTP(text, kr::decimalSystemVersion(),
                                                    kr::firstSystemWithSecureHTTP(firstSystemSetting()));
  return changed ? kr::toNSString(*changed) : address;
}

+ (BOOL)debugging {
  return kr::platform::services().program->isDebugged();
}

@end
