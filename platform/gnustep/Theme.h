// The look of the application on GNUstep: a light, flat theme in place of the toolkit's own. Main thread.
#pragma once

#import <AppKit/AppKit.h>
#import <GNUstepGUI/GSTheme.h>

@interface KRTheme : GSTheme {
  NSColorList* systemColors;  // owned
}

// Puts the theme in force. After the application object has been made.
+ (void)install;

@end
