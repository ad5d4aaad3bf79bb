#import "installer/micro/MicroDelegate.h"

namespace {

// Long enough for everybody who waits for the helper.
constexpr NSTimeInterval kLongestLife = 2.0;
// Who has opened the helper waits for half a second, and has done so since before it was loaded: that takes
// some hundredths of a second, on a busy machine up to two tenths.
constexpr NSTimeInterval kLongestStart = 0.3;

}  // namespace

// What makes an application the one in front is that a window of it has the keyboard. This one shows nothing.
@interface MicroWindow : NSWindow
@end

@implementation MicroWindow

- (BOOL)canBecomeKeyWindow {
  return YES;
}

- (BOOL)canBecomeMainWindow {
  return YES;
}

@end

@implementation MicroDelegate

- (id)initWithStart:(NSTimeInterval)uptime {
  self = [super init];
  if (self != nil) start = uptime;
  return self;
}

- (void)dealloc {
  [window release];
  [super dealloc];
}

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
  if ([[NSProcessInfo processInfo] systemUptime] - start > kLongestStart) {
    [NSApp terminate:self];
    return;
  }
  [NSApp performSelector:@selector(terminate:) withObject:self afterDelay:kLongestLife];
  window = [[MicroWindow alloc] initWithContentRect:NSMakeRect(0, 0, 1, 1)
                                          styleMask:NSWindowStyleMaskBorderless
                                            backing:NSBackingStoreBuffered
                                              defer:NO];
  [window setReleasedWhenClosed:NO];
  [window setTitle:[[NSProcessInfo processInfo] processName]];
  [window setAlphaValue:0];
  [window makeKeyAndOrderFront:self];
  [NSApp activateIgnoringOtherApps:YES];
}

- (void)applicationDidResignActive:(NSNotification*)notification {
  [NSApp terminate:self];
}

@end
