#import <AppKit/AppKit.h>

#import "platform/cocoa/PrepareApplication.h"
#import "samples/notes/NotesDelegate.h"

int main() {
  kr::platform::prepareApplication();
  @autoreleasepool {
    NSApplication* application = [NSApplication sharedApplication];
    NotesDelegate* delegate = [[[NotesDelegate alloc] init] autorelease];
    [application setDelegate:(id)delegate];
    [application run];
    [application setDelegate:nil];
  }
  return 0;
}
