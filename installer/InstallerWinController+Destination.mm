#import "installer/InstallerWinController.h"

#include "installer/DestinationRules.h"
#import "installer/KRInstallerInterface.h"
#import "library/process/KRProcess.h"
#include "library/process/SignatureText.h"
#include "platform/Log.h"
#import "platform/cocoa/Bridging.h"

using kr::toBytes;
using kr::toNSString;

@implementation InstallerWinController (Destination)

- (BOOL)isInUnsupportedFolder:(NSString*)path {
  return kr::isInUnsupportedFolder(kr::toOptionalBytes(path));
}

- (NSString*)autoLaunchPathFor:(NSString*)namePrefix {
  return toNSString(kr::autoLaunchPath(toBytes(namePrefix)));
}

- (NSString*)pathToProcessToReplace {
  std::vector<std::uint32_t> codes;
  for (const std::string& text : kr::toByteStrings([self codes:KRInstallerKeyProductCode])) {
    codes.push_back(kr::signatureFromText(text));
  }
  if (codes.empty()) return nil;
  std::vector<kr::RunningCopy> processes;
  KRProcess* installer = [KRProcess currentProcess];
  for (KRProcess* process in [KRProcess allProcesses]) {
    processes.push_back({.signature = [process signature],
                         .isInstaller = static_cast<bool>([process isEqual:installer]),
                         .path = [process] { return kr::toOptionalBytes([process path]); }});
  }
  return toNSString(kr::pathToReplace(processes, codes));
}

- (NSString*)findPreferredDestinationFor:(NSString*)productName {
  const auto runningCopy = [self] { return kr::toOptionalBytes([self pathToProcessToReplace]); };
  return toNSString(kr::preferredDestination(toBytes(productName), runningCopy));
}

- (NSString*)applicationsDirectory {
  return toNSString(std::string_view(kr::applicationsFolder()));
}

- (NSString*)recursiveLocalizedPath:(NSString*)path {
  return toNSString(std::string_view(kr::recursiveLocalizedPath(toBytes(path))));
}

- (NSString*)localizedPath:(NSString*)path {
  return toNSString(std::string_view(kr::localizedPath(toBytes(path))));
}

- (void)resolveDestination {
  const std::string source = toBytes([self argument:KRInstallerKeySourcePath]);
  NSString* wanted = [self argument:KRInstallerKeyDestinationPath];
  if (wanted == nil) wanted = [self findPreferredDestinationFor:[self argument:KRInstallerKeyProductName]];
  std::string destination = kr::destinationInFolder(kr::toOptionalBytes(wanted), source);

  if (NSString* wrapper = [self argument:KRInstallerKeyWrapperPath]; wrapper != nil) {
    const std::string folder = toBytes(wrapper);
    if (kr::isUsableWrapper(folder, source)) {
      kr::log("wrapper = %@", folder);
      destination = kr::destinationInWrapper(destination, folder);
    } else {
      [arguments removeObjectForKey:KRInstallerKeyWrapperPath];
    }
  }
  [arguments setObject:toNSString(std::string_view(destination)) forKey:KRInstallerKeyDestinationPath];
  [pathField
      setStringValue:kr::toDisplayText([self localizedPath:toNSString(std::string_view(destination))])];
}

@end
