#include "platform/HTMLText.h"

#import <AppKit/AppKit.h>

#import "platform/cocoa/Bridging.h"

namespace kr::platform {

std::optional<std::u16string> textOfHTML(std::u16string_view html) {
  @autoreleasepool {
    NSData* data = [toDisplayText(toNSString(html)) dataUsingEncoding:NSUnicodeStringEncoding];
    NSAttributedString* text = [[[NSAttributedString alloc] initWithHTML:data
                                                      documentAttributes:nil] autorelease];
    if (text == nil) return std::nullopt;
    return toUTF16([text string]);
  }
}

}  // namespace kr::platform
