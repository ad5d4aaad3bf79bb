#include <mutex>

#import "library/text/KRRegularExpression.h"
#import "library/text/StringExtensions.h"
#include "platform/Log.h"
#include "platform/RegexReplacement.h"
#import "platform/cocoa/Bridging.h"

namespace {

constexpr std::string_view kError = "Regular expression error: %@";
constexpr std::string_view kNotAvailable =
    "Regular expressions are not available (require OS X 10.7 or newer).";

}  // namespace

@implementation NSString (StringExtensionsRegex)

- (NSString*)stringByReplacingOccurrencesOfRegexPattern:(NSString*)pattern
                                           withTemplate:(NSString*)replacement {
  if (![KRRegularExpression regexAvailable]) {
    static std::once_flag logged;
    std::call_once(logged, [] { kr::log(kNotAvailable); });
    return self;
  }
  const kr::UTF16Text text(self);
  const kr::platform::RegexReplacement result =
      kr::platform::replaceMatches(text, kr::UTF16Text(pattern), kr::UTF16Text(replacement));
  if (!result.done) {
    kr::log(kError, result.error);
    return self;
  }
  return result.text == text.view() ? self : kr::toNSString(std::u16string_view(result.text));
}

@end
