#include "library/utilities/DarkMode.h"
#import "library/utilities/KRUtilities.h"

@implementation KRUtilities (Appearance)

+ (void)darkModeChanged:(NSNotification*)notification {
}

+ (BOOL)darkMenuTheme {
  return kr::menuThemeIsDark();
}

+ (BOOL)darkAppearance {
  return kr::appearanceIsDark();
}

@end
