// The look of the application on GNUstep: a flat theme, light or dark, in place of the toolkit's own. Main
// thread.
#pragma once

#import <AppKit/AppKit.h>
#import <GNUstepGUI/GSTheme.h>

namespace kr::theme {

// A push button's frame is that much wider than what is drawn, on both sides, as in AppKit: files place
// buttons by their frames.
inline constexpr CGFloat kButtonMargin = 6;

}  // namespace kr::theme

@interface KRTheme : GSTheme

// Puts the theme in force, in the dark or the light appearance. After the application object has been made.
+ (void)installDark:(BOOL)dark;

// Changes to the dark or the light appearance, also of the windows that are open.
+ (void)useDark:(BOOL)dark;

@end
