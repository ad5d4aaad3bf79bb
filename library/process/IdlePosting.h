// Notifications that are posted when the main thread next idles.
#pragma once

#import <Foundation/Foundation.h>

namespace kr {

// Posts the notification to the default center once the main thread's run loop idles in its default mode.
// While one of the same name and the same object waits, nothing happens: the one that was queued first is
// posted, with its userInfo. Main thread.
void postWhenIdle(NSString* name, id object, NSDictionary* userInfo);

}  // namespace kr
