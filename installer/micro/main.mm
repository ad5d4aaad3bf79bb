#import "installer/micro/MicroDelegate.h"

int main() {
  @autoreleasepool {
    const NSTimeInterval start = [[NSProcessInfo processInfo] systemUptime];
    // Neither a tile nor a small window of the toolkit's own.
    [[NSUserDefaults standardUserDefaults]
        registerDefaults:@{@"GSSuppressAppIcon" : @"YES", @"GSAppOwnsMiniwindow" : @"NO"}];
    NSApplication* application = [NSApplication sharedApplication];
    MicroDelegate* delegate = [[[MicroDelegate alloc] initWithStart:start] autorelease];
    [application setDelegate:(id)delegate];
    [application run];
    [application setDelegate:nil];
  }
  return 0;
}
