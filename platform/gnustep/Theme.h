// The look of the application on GNUstep: a flat theme, light or dark, in place of the toolkit's own. Main
// thread.
#pragma once

#import <AppKit/AppKit.h>
#import <GNUstepGUI/GSTheme.h>

@interface KRTheme : GSTheme

// Puts the theme in force, in the dark or the light appearance. After the application object has been made.
+ (void)installDark:(BOOL)dark;

// Changes to the dark or the light appearance, also of the windows that are open.
+ (void)useDark:(BOOL)dark;

@end
