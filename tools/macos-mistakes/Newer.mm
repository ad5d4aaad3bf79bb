// Calls what macOS 10.13 does not have, without asking whether it is there. tools/check-macos builds this to
// see that such a call does not compile.
#import <AppKit/AppKit.h>

NSColor* newerThanTheOldestSystem() {
  return [NSColor controlAccentColor];
}
