// Groups of animations: GNUstep has their class, but it does nothing. Main thread.
#pragma once

#import <AppKit/AppKit.h>

namespace kr::platform {

// One animation of the context is no longer under way. When it was the last and the group has ended, the
// context's completion handler is called, once.
void animationEnded(NSAnimationContext* context);

}  // namespace kr::platform
