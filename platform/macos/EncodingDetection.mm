#include "platform/EncodingDetection.h"

#import <Foundation/Foundation.h>

#import "platform/cocoa/Bridging.h"
#import "platform/macos/FileText.h"

namespace kr::platform {

std::optional<std::u16string> detectedText(const std::string& path, std::string_view /*contents*/) {
  @autoreleasepool {
    NSStringEncoding encoding = 0;
    NSString* text = [NSString stringWithContentsOfFile:macos::cocoaText(path)
                                           usedEncoding:&encoding
                                                  error:nullptr];
    if (text == nil) return std::nullopt;
    return toUTF16(text);
  }
}

}  // namespace kr::platform
