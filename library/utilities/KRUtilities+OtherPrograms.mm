#import "library/utilities/KRUtilities.h"

#import "library/process/KRProcess.h"
#include "library/utilities/SecureInputReport.h"
#include "library/utilities/ShellCommands.h"
#include "platform/Applications.h"
#include "platform/SecureInput.h"
#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"

namespace {

NSString* toNSString(const std::optional<std::u16string>& text) {
  return text ? kr::toNSString(*text) : nil;
}

}  // namespace

@implementation KRUtilities (OtherPrograms)

+ (NSString*)runShellScript:(NSString*)path
             withParameters:(NSArray*)parameters
                    timeout:(NSTimeInterval)timeout {
  kr::ShellScript script{.path = kr::toBytes(path), .timeout = timeout};
  if (parameters != nil) {
    script.parameters = kr::toByteStrings(parameters);
    script.parametersText = kr::toBytes([parameters description]);
    if (script.parameters->size() != [parameters count]) script.fault = "a parameter is no string";
  }
  return toNSString(kr::runShellScript(script));
}

+ (NSString*)shellCommandResult:(id)commandLine {
  const std::string words = kr::toBytes([NSString stringWithFormat:@"%@", commandLine]);
  const kr::CommandResult result = kr::runShellCommand(words);
  if (result.error) {
    [NSException raise:NSInvalidArgumentException
                format:@"could not start the shell: %@", kr::toNSString(result.error.message())];
  }
  return toNSString(result.output);
}

+ (void)openFile:(NSString*)path {
  if (path == nil) [NSException raise:NSInvalidArgumentException format:@"nothing to open"];
  kr::platform::services().applications->openInBackground(kr::toBytes(path));
}

+ (NSArray*)secureInputProcesses {
  const std::optional<std::string> report = kr::platform::services().secureInput->report();
  NSMutableArray* result = nil;
  for (const std::int32_t pid : kr::secureInputProcessIDs(report.value_or(""))) {
    KRProcess* process = [KRProcess processWithPID:pid];
    if (process == nil) continue;
    if (result == nil) result = [NSMutableArray arrayWithCapacity:1];
    if (![result containsObject:process]) [result addObject:process];
  }
  return result;
}

@end
