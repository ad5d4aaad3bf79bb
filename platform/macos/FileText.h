// Paths and words as Cocoa's calls may be given them: a string with a lone surrogate, by which Bridging keeps
// a byte that is no UTF-8, makes many of them raise. Any thread; the results are autoreleased.
#pragma once

#import <Foundation/Foundation.h>

#include <string_view>

#import "platform/cocoa/Bridging.h"

namespace kr::macos {

// For calls that only show or look up: bytes that are no UTF-8 are replaced by U+FFFD. Never nil.
[[nodiscard]] inline NSString* cocoaText(std::string_view bytes) {
  return toDisplayText(toNSString(bytes));
}

// For calls that change the item at the path, which must be this one and no other: nil for bytes that are no
// UTF-8. The system's own file systems have no such names (EILSEQ).
[[nodiscard]] inline NSString* exactPath(std::string_view bytes) {
  NSString* path = toNSString(bytes);
  return [toDisplayText(path) isEqualToString:path] ? path : nil;
}

}  // namespace kr::macos
