// Layouts for languages that are written from right to left. Main thread.
#pragma once

#import <AppKit/AppKit.h>

namespace kr::platform {

// Puts what stands at the left in a view to its right and the other way round, also in the pages of tab views
// and in other views that only hold views. What scrolls stays as it is.
void mirror(NSView* view);

}  // namespace kr::platform
