// Texts for the user. The English text is the key and the fallback. Any thread, unless it says otherwise.
#pragma once

#import <AppKit/AppKit.h>

namespace kr {

// From the strings table of the application.
[[nodiscard]] NSString* localized(NSString* englishText);

// The text as a format with one placeholder ("%@"), or with one value at several places ("%1$@"), filled with
// the value in a form that can be shown.
[[nodiscard]] NSString* filled(NSString* format, NSString* value);

// localized(), then filled().
[[nodiscard]] NSString* localizedFormat(NSString* englishFormat, NSString* value);

// Gives the items of a menu, and of the menus in it, the user's words for their English titles. Main thread.
void localizeMenu(NSMenu* menu);

}  // namespace kr
