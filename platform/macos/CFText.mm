#include "platform/macos/CFText.h"

#import <Foundation/Foundation.h>

#include <limits.h>

#include <array>

#import "platform/cocoa/Bridging.h"

namespace kr::macos {

std::string text(CFStringRef string) {
  return toBytes((NSString*)string);
}

std::u16string units(CFStringRef string) {
  return toUTF16((NSString*)string);
}

CFOwner<CFStringRef> string(std::string_view bytes) {
  return CFOwner<CFStringRef>(CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(bytes.data()),
                                                      static_cast<CFIndex>(bytes.size()),
                                                      kCFStringEncodingUTF8, false));
}

std::optional<std::string> path(CFURLRef location) {
  std::array<UInt8, PATH_MAX> bytes{};
  if (location == nullptr || ![(NSURL*)location isFileURL] ||
      !CFURLGetFileSystemRepresentation(location, true, bytes.data(), bytes.size())) {
    return std::nullopt;
  }
  return std::string(reinterpret_cast<const char*>(bytes.data()));
}

}  // namespace kr::macos
