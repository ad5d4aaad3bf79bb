#import "platform/cocoa/PropertyLists.h"

#include <array>
#include <optional>

#include "platform/Paths.h"
#include "platform/posix/Files.h"

namespace kr {
namespace {

constexpr std::array<std::string_view, 4> kInformationFiles{
    "Contents/Info.plist", "Resources/Info-gnustep.plist", "Resources/Info.plist", "Info.plist"};
constexpr std::array<std::string_view, 2> kResourceFolders{"Contents/Resources", "Resources"};

}  // namespace

NSDictionary* propertyListDictionary(std::string_view bytes) {
  if (bytes.empty()) return nil;
  @try {
    NSData* data = [NSData dataWithBytes:bytes.data() length:bytes.size()];
    id root = [NSPropertyListSerialization propertyListWithData:data
                                                        options:NSPropertyListImmutable
                                                         format:nullptr
                                                          error:nullptr];
    return [root isKindOfClass:[NSDictionary class]] ? root : nil;
  } @catch (NSException*) {
    return nil;
  }
}

NSDictionary* bundleInfoDictionary(const std::string& bundlePath) {
  NSMutableDictionary* found = nil;
  for (const std::string_view file : kInformationFiles) {
    const std::optional<std::string> bytes = files::contents(paths::joined(bundlePath, file));
    NSDictionary* dictionary = bytes ? propertyListDictionary(*bytes) : nil;
    if (dictionary == nil) continue;
    if (found == nil) {
      found = [NSMutableDictionary dictionaryWithDictionary:dictionary];
      continue;
    }
    for (id key in dictionary) {
      if ([found objectForKey:key] == nil) [found setObject:[dictionary objectForKey:key] forKey:key];
    }
  }
  return found;
}

std::string bundleResourcePath(const std::string& bundlePath, std::string_view name, std::string_view type) {
  std::string file(name);
  if (!type.empty()) file += "." + std::string(type);
  for (const std::string_view folder : kResourceFolders) {
    std::string path = paths::joined(paths::joined(bundlePath, folder), file);
    if (files::exists(path)) return path;
  }
  return {};
}

}  // namespace kr
