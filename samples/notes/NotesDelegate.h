// The sample product: one window with its icon, name and version. Ends with its window, and when it is asked
// to quit, unless its information dictionary says that it refuses ("KRRefusesToQuit"). Main thread.
#pragma once

#import <AppKit/AppKit.h>

@interface NotesDelegate : NSObject {
  NSWindow* window;  // owned
}

@end
