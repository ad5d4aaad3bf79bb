// Text views that can be fixed to the light appearance: the toolkit draws every view in the colours of the
// theme. Main thread.
#pragma once

#import <AppKit/AppKit.h>

namespace kr::theme {

// From now on the view is drawn light while it is fixed to the light appearance, and Tab passes over it while
// it is in no window.
void followAppearance(NSTextView* view);

}  // namespace kr::theme
