// An alert in the look of the application. The toolkit's own shows a message on one line, cut off at the edge
// of the panel. Main thread.
#pragma once

#import <AppKit/AppKit.h>

#import "platform/cocoa/Alerts.h"

@interface KRAlertPanel : NSPanel {
  NSWindow* owner;  // the window that it is a sheet on, owned while it is up
  kr::platform::Alerts::Ended* ended;
}

// The panel is as high as its texts need, but not higher than the screen. Buttons stand in one row, the
// default button at its right end; Return presses that, Tab goes to the next, Space presses the one with the
// focus. Closing the panel presses the default button as well.
- (instancetype)initWithAlert:(const kr::platform::Alert&)alert;

// Shows the panel on the window as soon as the application runs. See Alerts::beginSheet.
- (void)beginSheetForWindow:(NSWindow*)window ended:(kr::platform::Alerts::Ended)callback;

@end
