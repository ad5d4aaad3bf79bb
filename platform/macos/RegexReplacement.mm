#include "platform/RegexReplacement.h"

#import <Foundation/Foundation.h>

#import "platform/cocoa/Bridging.h"

namespace kr::platform {

RegexReplacement replaceMatches(std::u16string_view text, std::u16string_view pattern,
                                std::u16string_view replacement) {
  @autoreleasepool {
    RegexReplacement result;
    NSError* error = nil;
    NSRegularExpression* regex = [NSClassFromString(@"NSRegularExpression")
        regularExpressionWithPattern:toNSString(pattern)
                             options:NSRegularExpressionUseUnicodeWordBoundaries
                               error:&error];
    if (regex == nil) {
      result.error = toBytes([error description]);
      return result;
    }
    result.text = toUTF16([regex stringByReplacingMatchesInString:toNSString(text)
                                                          options:0
                                                            range:NSMakeRange(0, text.size())
                                                     withTemplate:toNSString(replacement)]);
    result.done = true;
    return result;
  }
}

}  // namespace kr::platform
