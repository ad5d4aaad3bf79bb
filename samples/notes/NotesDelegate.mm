#import "samples/notes/NotesDelegate.h"

#include <signal.h>

#import "platform/cocoa/Bridging.h"
#import "platform/cocoa/PrepareApplication.h"
#include "samples/done/SendDone.h"

namespace {

constexpr CGFloat kWidth = 360;
constexpr CGFloat kHeight = 240;
constexpr CGFloat kIconSide = 96;

NSString* information(NSString* key) {
  NSString* value = [[NSBundle mainBundle] objectForInfoDictionaryKey:key];
  return value != nil ? value : @"";
}

bool refusesToQuit() {
  return [[[NSBundle mainBundle] objectForInfoDictionaryKey:@"KRRefusesToQuit"] boolValue];
}

NSTextField* label(NSString* text, NSFont* font, NSColor* color, CGFloat y) {
  const NSRect frame = NSMakeRect(20, y, kWidth - 40, [font pointSize] + 12);
  NSTextField* field = [[[NSTextField alloc] initWithFrame:frame] autorelease];
  [field setStringValue:text];
  [field setFont:font];
  [field setTextColor:color];
  [field setAlignment:NSTextAlignmentCenter];
  [field setEditable:NO];
  [field setBezeled:NO];
  [field setDrawsBackground:NO];
  return field;
}

NSImageView* icon() {
  const NSRect frame = NSMakeRect((kWidth - kIconSide) / 2, 112, kIconSide, kIconSide);
  NSImageView* view = [[[NSImageView alloc] initWithFrame:frame] autorelease];
  [view setImageScaling:NSImageScaleProportionallyUpOrDown];
  [view setImage:[NSImage imageNamed:information(@"CFBundleIconFile")]];
  return view;
}

}  // namespace

@interface NotesDelegate ()
- (NSMenu*)menu;
- (NSWindow*)makeWindow;
@end

@implementation NotesDelegate

- (void)dealloc {
  [window release];
  [super dealloc];
}

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
  [NSApp setMainMenu:[self menu]];
  window = [self makeWindow];
  [window center];
  [window makeKeyAndOrderFront:self];
  // The toolkit has taken the signal over by now: it would become a polite request, which is refused below in
  // any case.
  if (refusesToQuit()) ::signal(SIGTERM, SIG_IGN);
  // The window stands: to the installer that has launched it, if there is one, the installation has worked.
  kr::sendDone(kr::installationTag(kr::toBytes(information(@"CFBundleName")),
                                   kr::toBytes(information(@"CFBundleShortVersionString"))));
}

- (NSMenu*)menu {
  NSString* name = information(@"CFBundleName");
  NSMenu* application = [[[NSMenu alloc] initWithTitle:name] autorelease];
  [application addItemWithTitle:NSLocalizedString(@"Quit Velmora Notes", @"in the menu")
                         action:@selector(terminate:)
                  keyEquivalent:@"q"];
  NSMenu* menu = [[[NSMenu alloc] initWithTitle:name] autorelease];
  [menu setSubmenu:application forItem:[menu addItemWithTitle:name action:nullptr keyEquivalent:@""]];
  return menu;
}

// Owned by the caller.
- (NSWindow*)makeWindow {
  NSWindow* made = [[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, kWidth, kHeight)
                                               styleMask:NSWindowStyleMaskTitled | NSWindowStyleMaskClosable |
                                                         NSWindowStyleMaskMiniaturizable
                                                 backing:NSBackingStoreBuffered
                                                   defer:NO];
  [made setReleasedWhenClosed:NO];
  [made setTitle:information(@"CFBundleName")];
  NSString* version = [NSString stringWithFormat:@"Version %@", information(@"CFBundleShortVersionString")];
  NSView* content = [made contentView];
  [content addSubview:icon()];
  [content addSubview:label(information(@"CFBundleName"), [NSFont boldSystemFontOfSize:20],
                            [NSColor controlTextColor], 64)];
  [content addSubview:label(version, [NSFont systemFontOfSize:13], [NSColor secondaryLabelColor], 36)];
  kr::platform::finishWindow(made);
  return made;
}

- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)application {
  return YES;
}

- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)application {
  return refusesToQuit() ? NSTerminateCancel : NSTerminateNow;
}

@end
