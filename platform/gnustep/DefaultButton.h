// The button that Return presses: it is filled with the accent colour, and its title must be readable there.
// Main thread.
#pragma once

#import <AppKit/AppKit.h>

namespace kr::theme {

// An enabled push button whose key is Return.
[[nodiscard]] bool isDefaultButton(NSCell* cell);

// From now on titles of default buttons are drawn in the colour that goes with the accent colour, and titles
// from right to left as they are written. Once is enough; further calls do nothing.
void adjustButtonTitles();

}  // namespace kr::theme
