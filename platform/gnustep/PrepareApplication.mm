#import "platform/cocoa/PrepareApplication.h"

#include <objc/runtime.h>
#include <stdlib.h>

#include <algorithm>
#include <iterator>
#include <string_view>

#include "platform/DesktopAppearance.h"
#include "platform/Services.h"
#import "platform/cocoa/Mirror.h"
#include "platform/gnustep/CommandLineBytes.h"
#import "platform/gnustep/ImageTypes.h"
#import "platform/gnustep/LabelText.h"
#import "platform/gnustep/ReadingView.h"
#import "platform/gnustep/Theme.h"
#import "platform/gnustep/ThemeNotice.h"
#import "platform/gnustep/TruncatingLabel.h"
#import "platform/gnustep/UserLanguages.h"
#include "platform/gnustep/WindowServerLoss.h"
#include "platform/linux/DesktopColorScheme.h"

namespace kr::platform {
namespace {

constexpr const char* kEncodingVariable = "GNUSTEP_STRING_ENCODING";

struct Fonts {
  std::string_view language;
  NSString* regular;
  NSString* bold;
};

// Of the languages that the font of all others does not cover. The same characters have other forms in
// Japanese, Korean and Chinese.
const Fonts kFonts[] = {{"ar", @"DejaVuSans", @"DejaVuSans-Bold"},
                        {"ja", @"NotoSansCJKjp-Regular", @"NotoSansCJKjp-Bold"},
                        {"ko", @"NotoSansCJKkr-Regular", @"NotoSansCJKkr-Bold"},
                        {"zh-Hans", @"NotoSansCJKsc-Regular", @"NotoSansCJKsc-Bold"}};
const Fonts kOtherFonts{"", @"Inter-Regular", @"Inter-Bold"};

const Fonts& fontsOfInterface() {
  const auto found = std::find_if(std::begin(kFonts), std::end(kFonts),
                                  [](const Fonts& fonts) { return fonts.language == interfaceLanguage(); });
  return found == std::end(kFonts) ? kOtherFonts : *found;
}

// What the application registers before the toolkit reads it; the user's own settings win.
NSDictionary* defaults() {
  NSMutableDictionary* values = [NSMutableDictionary dictionaryWithDictionary:@{
    @"NSFontSize" : @"13",
    // No tile for the running application or a small window, no floating menu, and frames by the window
    // manager.
    @"GSSuppressAppIcon" : @"YES",
    @"GSAppOwnsMiniwindow" : @"NO",
    @"NSMenuInterfaceStyle" : @"NSWindows95InterfaceStyle",
    @"NSScrollViewInterfaceStyle" : @"NSWindows95InterfaceStyle",
    @"GSScrollViewNoInnerBorder" : @"YES",
    // Characters at the places where they belong: rounded advances look spaced out.
    @"GSFontHinting" : @"18",
    @"GSX11HandlesWindowDecorations" : @"YES",
    // The keys of this keyboard that stand for Option, Command and Control.
    @"GSFirstAlternateKey" : @"Alt_L",
    @"GSSecondAlternateKey" : @"Alt_R",
    @"GSFirstCommandKey" : @"Control_L",
    @"GSSecondCommandKey" : @"Control_R",
    @"GSFirstControlKey" : @"Super_L",
    @"GSSecondControlKey" : @"Super_R"
  }];
  for (NSString* name in @[
         @"NSFont", @"NSUserFont", @"NSLabelFont", @"NSMessageFont", @"NSControlContentFont", @"NSMenuFont",
         @"NSToolTipsFont"
       ]) {
    [values setObject:fontsOfInterface().regular forKey:name];
  }
  for (NSString* name in @[ @"NSBoldFont", @"NSTitleBarFont", @"NSPaletteFont" ]) {
    [values setObject:fontsOfInterface().bold forKey:name];
  }
  return values;
}

// A label with this tag is a bold one: the reader of user-interface files takes the size of a font only.
constexpr NSInteger kBoldLabel = 1;

constexpr NSSize kTextInset{8, 10};

void finishLabel(NSTextField* label) {
  [label setEditable:NO];
  [label setBordered:NO];
  [label setBezeled:NO];
  [label setDrawsBackground:NO];
  kr::theme::truncateInTheMiddle(label);
  kr::theme::drawInBothDirections(label);
  if ([label tag] == kBoldLabel) [label setFont:[NSFont boldSystemFontOfSize:[[label font] pointSize]]];
}

void finishViews(NSView* view) {
  for (NSView* child in [view subviews]) {
    if ([child isKindOfClass:[NSTextField class]]) {
      finishLabel(static_cast<NSTextField*>(child));
    } else if ([child isKindOfClass:[NSProgressIndicator class]]) {
      [static_cast<NSProgressIndicator*>(child) setDisplayedWhenStopped:NO];
    } else if ([child isKindOfClass:[NSScrollView class]]) {
      [[static_cast<NSScrollView*>(child) verticalScroller] setArrowsPosition:NSScrollerArrowsNone];
    } else if ([child isKindOfClass:[NSTextView class]]) {
      [static_cast<NSTextView*>(child) setTextContainerInset:kTextInset];
      kr::theme::followAppearance(static_cast<NSTextView*>(child));
    } else if ([child isKindOfClass:[NSTabView class]]) {
      for (NSTabViewItem* item in [static_cast<NSTabView*>(child) tabViewItems]) finishViews([item view]);
    }
    finishViews(child);
  }
}

// Selectors of one name can be several on this runtime: sel_isEqual compares their names.
bool isHidingCommand(SEL action) {
  const SEL commands[] = {
    @selector(hide:),
    @selector(hideOtherApplications:),
    @selector(unhideAllApplications:)
  };
  return std::any_of(std::begin(commands), std::end(commands),
                     [action](SEL command) { return action != nullptr && sel_isEqual(action, command); });
}

// Without a tile or a dock nothing would bring a hidden application back.
void removeHidingCommands(NSMenu* menu) {
  for (NSMenuItem* item in [NSArray arrayWithArray:[menu itemArray]]) {
    if ([item hasSubmenu]) {
      removeHidingCommands([item submenu]);
    } else if (isHidingCommand([item action])) {
      [menu removeItem:item];
    }
  }
}

}  // namespace

void prepareApplication() {
  restoreCommandLineBytes();
  @autoreleasepool {
    // File names and texts are UTF-8 whatever the locale is.
    const bool encodingIsGiven = ::getenv(kEncodingVariable) != nullptr;
    ::setenv(kEncodingVariable, "NSUTF8StringEncoding", 0);
    useUserLanguages();
    [[NSUserDefaults standardUserDefaults] registerDefaults:defaults()];
    theme::keepOwnImageTypes();
    // The desktop answers while the toolkit starts.
    askDesktopColorScheme();
    [NSApplication sharedApplication];
    [KRTheme installDark:services().desktopAppearance->isDark()];
    onDesktopColorSchemeChange([] {
      [KRTheme useDark:services().desktopAppearance->isDark()];
      theme::announceChange();
    });
    theme::followAnnouncements();
    // Read by now; the programs that the application starts are to find their own.
    if (!encodingIsGiven) ::unsetenv(kEncodingVariable);
  }
}

void finishWindow(NSWindow* window) {
  finishWorkWithoutWindowServer();
  finishViews([window contentView]);
  if (interfaceIsRightToLeft()) mirror([window contentView]);
  removeHidingCommands([NSApp mainMenu]);
}

}  // namespace kr::platform
