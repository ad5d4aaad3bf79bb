// Texts for the user. The English text is the key and the fallback. Any thread.
#pragma once

#import <Foundation/Foundation.h>

namespace kr {

// From the strings table of the application.
[[nodiscard]] NSString* localized(NSString* englishText);

// The text as a format with one placeholder ("%@"), or with one value at several places ("%1$@"), filled with
// the value in a form that can be shown.
[[nodiscard]] NSString* filled(NSString* format, NSString* value);

// localized(), then filled().
[[nodiscard]] NSString* localizedFormat(NSString* englishFormat, NSString* value);

}  // namespace kr
