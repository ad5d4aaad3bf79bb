#import "installer/InstallerWinController.h"

#import "installer/KRInstallerInterface.h"
#include "installer/LaunchArguments.h"
#include "installer/ProductLocation.h"
#include "platform/Log.h"
#include "platform/Program.h"
#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"
#include "platform/posix/Files.h"

using kr::toBytes;
using kr::toNSString;

namespace {

NSMutableDictionary* dictionaryFrom(const kr::InstallerArguments& parsed) {
  NSMutableDictionary* dictionary = [NSMutableDictionary dictionaryWithCapacity:parsed.size()];
  for (const auto& [key, value] : parsed) {
    const auto* list = std::get_if<std::vector<std::string>>(&value);
    id object = list ? static_cast<id>(kr::toNSArray(*list))
                     : static_cast<id>(toNSString(std::string_view(std::get<std::string>(value))));
    [dictionary setObject:object forKey:toNSString(std::string_view(key))];
  }
  return dictionary;
}

kr::InstallerArguments argumentsFrom(NSDictionary* dictionary) {
  kr::InstallerArguments result;
  for (NSString* key in dictionary) {
    id value = [dictionary objectForKey:key];
    if ([value isKindOfClass:[NSArray class]]) {
      result[toBytes(key)] = kr::toByteStrings(value);
    } else {
      result[toBytes(key)] = toBytes(value);
    }
  }
  return result;
}

}  // namespace

@implementation InstallerWinController (Arguments)

- (void)extractArguments {
  if (arguments != nil) return;
  const std::vector<std::string> words = kr::platform::services().program->arguments();
  kr::log("arguments: %@", kr::listDescription(words));
  arguments = [dictionaryFrom(kr::parsedArguments(words)) retain];
}

- (NSString*)argument:(NSString*)key {
  id value = [arguments objectForKey:key];
  return [value isKindOfClass:[NSString class]] ? value : nil;
}

- (NSArray*)codes:(NSString*)key {
  id value = [arguments objectForKey:key];
  return [value isKindOfClass:[NSArray class]] ? value : nil;
}

- (NSString*)productText:(NSString*)key {
  id value = [productInfo objectForKey:key];
  return [value isKindOfClass:[NSString class]] ? value : nil;
}

- (BOOL)hasFileAtArgument:(NSString*)key {
  NSString* path = [self argument:key];
  return path != nil && kr::files::exists(toBytes(path));
}

- (BOOL)completeSourcePath {
  if ([self argument:KRInstallerKeySourcePath] != nil) return YES;
  const auto application = kr::enclosingApplication(kr::platform::services().program->bundlePath());
  if (!application) {
    [self playDoneSound];
    [self showSetupError:@"missing source path"];
    return NO;
  }
  [arguments setObject:toNSString(application) forKey:KRInstallerKeySourcePath];
  return YES;
}

- (BOOL)completeProductName {
  if ([self argument:KRInstallerKeyProductName] != nil) return YES;
  const auto name = kr::productNameFromPath(toBytes([self argument:KRInstallerKeySourcePath]));
  if (!name) {
    [self showSetupError:@"missing program name"];
    return NO;
  }
  [arguments setObject:toNSString(name) forKey:KRInstallerKeyProductName];
  return YES;
}

- (void)completeDocumentation {
  if (![self hasFileAtArgument:KRInstallerKeyDocumentationPath]) {
    [arguments removeObjectForKey:KRInstallerKeyDocumentationPath];
  }
}

- (BOOL)completeCodes {
  NSMutableArray* productCodes = [[[self codes:KRInstallerKeyProductCode] mutableCopy] autorelease];
  if (productCodes == nil) {
    NSString* signature = [self productText:@"CFBundleSignature"];
    if (signature == nil) {
      [self showSetupError:@"missing product signature"];
      return NO;
    }
    productCodes = [NSMutableArray arrayWithObject:signature];
    [arguments setObject:productCodes forKey:KRInstallerKeyProductCode];
  }
  NSMutableArray* quitCodes = [[[self codes:KRInstallerKeyQuitCode] mutableCopy] autorelease];
  [quitCodes addObjectsFromArray:productCodes];
  [arguments setObject:quitCodes ? quitCodes : productCodes forKey:KRInstallerKeyQuitCode];
  kr::log("Updated arguments: %@", kr::description(argumentsFrom(arguments)));
  return YES;
}

@end
