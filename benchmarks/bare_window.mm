// The least that an application of this toolkit needs to put a window on the screen: what the installer is
// measured against.
#import <AppKit/AppKit.h>

int main(int count, const char* words[]) {
  @autoreleasepool {
    [NSApplication sharedApplication];
    NSWindow* window = [[NSWindow alloc] initWithContentRect:NSMakeRect(200, 200, 560, 400)
                                                   styleMask:NSTitledWindowMask | NSClosableWindowMask
                                                     backing:NSBackingStoreBuffered
                                                       defer:NO];
    [window setTitle:@"Bare"];
    [window makeKeyAndOrderFront:nil];
  }
  return NSApplicationMain(count, words);
}
