// The helper comes to the front, and ends when another application does, or after a short time in any case:
// its only purpose is that the application in front changes twice. One that was too slow to start ends
// without coming to the front: nobody would take the keyboard back from it.
#pragma once

#import <AppKit/AppKit.h>

@interface MicroDelegate : NSObject {
  NSTimeInterval start;
  NSWindow* window;
}

// `uptime` is the system's at the beginning of main(), when the program has been loaded.
- (id)initWithStart:(NSTimeInterval)uptime;

@end
