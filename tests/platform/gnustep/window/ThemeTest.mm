#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/DesktopAppearance.h"
#include "platform/Services.h"
#import "platform/cocoa/Bridging.h"
#import "platform/cocoa/PrepareApplication.h"
#import "platform/gnustep/Appearance.h"
#import "platform/gnustep/Theme.h"
#import "platform/gnustep/ThemeColors.h"
#import "platform/gnustep/TruncatingLabel.h"
#include "platform/testing/FixedDesktop.h"
#import "tests/support/DrawnWindow.h"
#include "tests/support/Eventually.h"
#include "tests/support/SettingsPortal.h"

// A view that wants to know of changes between light and dark.
@interface KRThemeListener : NSView {
 @public
  int changes;
}
@end

@implementation KRThemeListener

- (void)themeChanged:(NSNotification*)notification {
  ++changes;
}

@end

namespace kr::testing {
namespace {

NSString* const kThemeChanged = @"AppleInterfaceThemeChangedNotification";

// A desktop that is light or dark as the test says, whatever other programs tell of the user's. Ends light.
class DesktopLooks {
 public:
  DesktopLooks() {
    platform::Services set = platform::services();
    set.desktopAppearance = &appearance;
    services_.emplace(set);
  }
  ~DesktopLooks() { use(false); }
  DesktopLooks(const DesktopLooks&) = delete;
  DesktopLooks& operator=(const DesktopLooks&) = delete;

  void use(bool dark) {
    appearance.dark = dark;
    [KRTheme useDark:dark];
  }

  platform::testing::FixedDesktopAppearance appearance;

 private:
  std::optional<platform::ScopedServices> services_;
};

class Theme : public DrawnWindow {
 public:
  // The toolkit asks the portal for the user's choice over the bus.
  static void SetUpTestSuite() { startDesktop({.display = true, .windowManager = true, .bus = true}); }

 protected:
  NSButton* addButton(NSString* key) {
    NSButton* button = add<NSButton>([NSButton class], NSMakeRect(20, 20, 112, 32));
    [button setBezelStyle:NSRoundedBezelStyle];
    [button setTitle:@"Install"];
    [button setKeyEquivalent:key];
    return button;
  }

  // In front, with the keyboard.
  void show() {
    // The window manager may still be busy with the focus of the window before.
    for (int i = 0; i < 20 && !([NSApp isActive] && [window_ isKeyWindow]); ++i) {
      [NSApp activateIgnoringOtherApps:YES];
      [window_ makeKeyAndOrderFront:nil];
      run(0.25);
    }
    ASSERT_TRUE([window_ isKeyWindow]);
    run(0.1);
    [window_ makeFirstResponder:nil];
  }

  // The colours that the view shows, as 0xRRGGBB, row by row.
  static std::vector<int> pixels(NSView* view) { return pixels(view, [view visibleRect]); }

  static std::vector<int> pixels(NSView* view, NSRect part) {
    [[view window] display];
    [view lockFocus];
    NSBitmapImageRep* image = [[[NSBitmapImageRep alloc] initWithFocusedViewRect:part] autorelease];
    [view unlockFocus];
    std::vector<int> found;
    for (NSInteger y = 0; y < [image pixelsHigh]; ++y) {
      for (NSInteger x = 0; x < [image pixelsWide]; ++x) {
        NSUInteger values[5] = {};
        [image getPixel:values atX:x y:y];
        found.push_back(static_cast<int>(values[0] << 16 | values[1] << 8 | values[2]));
      }
    }
    return found;
  }

  static long count(const std::vector<int>& pixels, int color) {
    return std::count(pixels.begin(), pixels.end(), color);
  }
};

bool hasMenu(NSView* view) {
  if ([view isKindOfClass:[NSMenuView class]]) return true;
  for (NSView* child in [view subviews]) {
    if (hasMenu(child)) return true;
  }
  return false;
}

// The edges of characters are of mixed colours, so a title is told by what is nearly its colour.
bool isBright(int pixel) {
  return (pixel >> 16 & 0xFF) > 0xC0 && (pixel >> 8 & 0xFF) > 0xC0 && (pixel & 0xFF) > 0xC0;
}

bool isDark(int pixel) {
  return (pixel >> 16 & 0xFF) < 0x40 && (pixel >> 8 & 0xFF) < 0x40 && (pixel & 0xFF) < 0x40;
}

TEST_F(Theme, TheDefaultButtonIsFilledAndItsTitleIsReadableOnIt) {
  NSButton* button = addButton(@"\r");
  show();
  const std::vector<int> shown = pixels(button);
  EXPECT_GT(count(shown, theme::kLight.accent), 1500);
  EXPECT_EQ(std::count_if(shown.begin(), shown.end(), isDark), 0) << "the colour of other titles";
  [button setTitle:@""];
  const std::vector<int> untitled = pixels(button);
  EXPECT_GT(std::count_if(shown.begin(), shown.end(), isBright),
            std::count_if(untitled.begin(), untitled.end(), isBright) + 40);
}

TEST_F(Theme, AnotherButtonIsNot) {
  NSButton* button = addButton(@"");
  show();
  const std::vector<int> shown = pixels(button);
  EXPECT_EQ(count(shown, theme::kLight.accent), 0);
  EXPECT_GT(count(shown, theme::kLight.surface), 1500);
}

TEST_F(Theme, ADefaultButtonThatCannotBePressedLooksLikeIt) {
  NSButton* button = addButton(@"\r");
  [button setEnabled:NO];
  show();
  EXPECT_EQ(count(pixels(button), theme::kLight.accent), 0);
}

TEST_F(Theme, TheBarMovesWhileItRunsAndIsInvisibleWhenItDoesNot) {
  NSProgressIndicator* bar =
      add<NSProgressIndicator>([NSProgressIndicator class], NSMakeRect(20, 20, 300, 20));
  [bar setIndeterminate:YES];
  platform::finishWindow(window_);
  show();
  EXPECT_EQ(count(pixels([window_ contentView]), theme::kLight.track), 0);
  [bar startAnimation:nil];
  std::set<std::vector<int>> looks;
  for (int look = 0; look < 5; ++look) {
    run(0.3);
    looks.insert(pixels([window_ contentView]));
  }
  EXPECT_GE(looks.size(), 4U);
  EXPECT_GT(count(*looks.begin(), theme::kLight.track), 500);
  EXPECT_GT(count(*looks.begin(), theme::kLight.bar), 200);
  [bar stopAnimation:nil];
  run(0.1);
  EXPECT_EQ(count(pixels([window_ contentView]), theme::kLight.track), 0);
  EXPECT_EQ(count(pixels([window_ contentView]), theme::kLight.bar), 0);
}

TEST_F(Theme, TheMenuShowsNowhereButItsKeysWork) {
  NSMenu* menu = [[[NSMenu alloc] initWithTitle:@"Main"] autorelease];
  NSMenu* edit = [[[NSMenu alloc] initWithTitle:@"Edit"] autorelease];
  [edit addItemWithTitle:@"Order Out" action:@selector(orderOut:) keyEquivalent:@"o"];
  [edit addItemWithTitle:@"Hide" action:@selector(hide:) keyEquivalent:@"h"];
  [menu setSubmenu:edit forItem:[menu addItemWithTitle:@"Edit" action:nullptr keyEquivalent:@""]];
  [NSApp setMainMenu:menu];
  platform::finishWindow(window_);
  show();
  EXPECT_EQ(NSHeight([[window_ contentView] frame]), kSide);
  EXPECT_FALSE(hasMenu([[window_ contentView] superview]));
  for (NSWindow* window in [NSApp windows]) {
    if (window != window_) EXPECT_FALSE([window isVisible]) << toBytes([window title]);
  }
  EXPECT_EQ([edit numberOfItems], 1) << "nothing could bring a hidden application back";
  NSEvent* key = [NSEvent keyEventWithType:NSKeyDown
                                  location:NSZeroPoint
                             modifierFlags:NSCommandKeyMask
                                 timestamp:0
                              windowNumber:[window_ windowNumber]
                                   context:nil
                                characters:@"o"
               charactersIgnoringModifiers:@"o"
                                 isARepeat:NO
                                   keyCode:0];
  ASSERT_TRUE([window_ isVisible]);
  [NSApp sendEvent:key];
  EXPECT_FALSE([window_ isVisible]);
}

TEST_F(Theme, ALabelWithTheTagOfBoldLabelsIsBold) {
  NSTextField* bold = add<NSTextField>([NSTextField class], NSMakeRect(20, 20, 100, 20));
  NSTextField* plain = add<NSTextField>([NSTextField class], NSMakeRect(20, 60, 100, 20));
  for (NSTextField* label : {bold, plain}) [label setFont:[NSFont systemFontOfSize:20]];
  [bold setTag:1];
  platform::finishWindow(window_);
  EXPECT_EQ(toBytes([[bold font] fontName]), "Inter-Bold");
  EXPECT_EQ([[bold font] pointSize], 20);
  EXPECT_EQ(toBytes([[plain font] fontName]), "Inter-Regular");
  EXPECT_FALSE([bold isEditable]);
  EXPECT_FALSE([bold drawsBackground]);
}

TEST_F(Theme, ATextThatIsTooLongKeepsItsBeginningAndItsEnd) {
  NSDictionary* attributes = @{NSFontAttributeName : [NSFont systemFontOfSize:13]};
  NSString* path = @"/Applications/A rather long folder name/Another one below it/Notes.app";
  const CGFloat whole = [path sizeWithAttributes:attributes].width;
  EXPECT_EQ(toBytes(theme::middleTruncated(path, attributes, whole)), toBytes(path));

  NSString* shown = theme::middleTruncated(path, attributes, whole / 2);
  EXPECT_LE([shown sizeWithAttributes:attributes].width, whole / 2);
  EXPECT_GT([shown sizeWithAttributes:attributes].width, whole / 2 - 20)
      << "no more is left out than must be";
  EXPECT_TRUE([shown hasPrefix:@"/Applications/"]) << toBytes(shown);
  EXPECT_TRUE([shown hasSuffix:@"/Notes.app"]) << toBytes(shown);
  EXPECT_NE([shown rangeOfString:toNSString(std::u16string_view(u"\u2026"))].location,
            (NSUInteger)NSNotFound);

  EXPECT_EQ(toBytes(theme::middleTruncated(path, attributes, 0)), "\u2026");
}

TEST_F(Theme, NoCharacterIsTakenApart) {
  NSDictionary* attributes = @{NSFontAttributeName : [NSFont systemFontOfSize:13]};
  NSMutableString* text = [NSMutableString string];
  for (int i = 0; i < 20; ++i) [text appendString:toNSString(std::u16string_view(u"\U0001F4D2"))];
  const CGFloat whole = [text sizeWithAttributes:attributes].width;
  for (int part = 1; part < 20; ++part) {
    const std::u16string shown = toUTF16(theme::middleTruncated(text, attributes, whole * part / 20));
    EXPECT_EQ(shown.size() % 2, 1U) << "pairs of units and the ellipsis";
  }
}

TEST_F(Theme, ALabelThatLeavesOutTheMiddleDrawsTheEnd) {
  NSTextField* label = add<NSTextField>([NSTextField class], NSMakeRect(20, 20, 120, 20));
  [[label cell] setLineBreakMode:NSLineBreakByTruncatingMiddle];
  platform::finishWindow(window_);
  show();
  [label setStringValue:@"Beginning of a text that is too long, one"];
  const std::vector<int> one = pixels(label);
  [label setStringValue:@"Beginning of a text that is too long, two"];
  EXPECT_NE(one, pixels(label));
}

// Of two colours, by the formula of the web's guidelines for accessible contents.
double luminance(int color) {
  const auto part = [&](int shift) {
    const double value = (color >> shift & 0xFF) / 255.0;
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * part(16) + 0.7152 * part(8) + 0.0722 * part(0);
}

double contrast(int one, int other) {
  const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
  return (light + 0.05) / (dark + 0.05);
}

constexpr double kReadable = 4.5;

TEST_F(Theme, EveryTextIsReadableInBothAppearances) {
  EXPECT_NEAR(contrast(0x000000, 0xFFFFFF), 21, 0.01);
  EXPECT_NEAR(contrast(0x777777, 0xFFFFFF), 4.48, 0.01);
  for (const theme::Palette* set : {&theme::kLight, &theme::kDark}) {
    for (const int ground : {set->window, set->surface}) {
      for (const int text : {set->text, set->textSecondary, set->textDisabled}) {
        EXPECT_GE(contrast(text, ground), kReadable) << std::hex << text << " on " << ground;
      }
    }
    EXPECT_GE(contrast(set->text, set->surfacePressed), kReadable);
    EXPECT_GE(contrast(set->text, set->selection), kReadable);
    EXPECT_GE(contrast(set->textSecondary, set->selection), kReadable);
    EXPECT_GE(contrast(set->accentText, set->accent), kReadable);
    EXPECT_GE(contrast(set->accentText, set->accentPressed), kReadable);
    // What is no text has to be told from its ground.
    EXPECT_GE(contrast(set->bar, set->track), 3);
    EXPECT_GE(contrast(set->focus, set->window), 3);
    EXPECT_GE(contrast(set->focus, set->surface), 3);
  }
}

TEST_F(Theme, EveryKindOfLabelIsInAColourOfTexts) {
  for (NSString* name in
       @[ @"labelColor", @"secondaryLabelColor", @"tertiaryLabelColor", @"quaternaryLabelColor" ]) {
    const auto entry =
        std::find_if(theme::kSystemColors.begin(), theme::kSystemColors.end(),
                     [&](const theme::SystemColor& color) { return [color.name isEqualToString:name]; });
    ASSERT_NE(entry, theme::kSystemColors.end()) << toBytes(name);
    for (const theme::Palette* set : {&theme::kLight, &theme::kDark}) {
      EXPECT_GE(contrast(set->*entry->value, set->window), kReadable) << toBytes(name);
    }
  }
}

// Contrast of the colour that most of the view has and the one that is farthest from it.
double shownContrast(const std::vector<int>& shown) {
  std::map<int, int> often;
  for (const int pixel : shown) ++often[pixel];
  const int ground = std::max_element(often.begin(), often.end(), [](const auto& one, const auto& other) {
                       return one.second < other.second;
                     })->first;
  double most = 1;
  for (const auto& [pixel, times] : often) most = std::max(most, contrast(pixel, ground));
  return most;
}

TEST_F(Theme, EveryTextIsReadableOnTheScreen) {
  NSTextField* plain = add<NSTextField>([NSTextField class], NSMakeRect(20, 120, 300, 24));
  NSTextField* secondary = add<NSTextField>([NSTextField class], NSMakeRect(20, 160, 300, 24));
  [secondary setTextColor:[NSColor colorWithCatalogName:@"System" colorName:@"secondaryLabelColor"]];
  for (NSTextField* label : {plain, secondary}) {
    [label setFont:[NSFont boldSystemFontOfSize:20]];
    [label setStringValue:@"HIIIH"];
  }
  NSButton* primary = addButton(@"\r");
  NSButton* other = addButton(@"");
  [other setFrameOrigin:NSMakePoint(150, 20)];
  NSButton* disabled = addButton(@"");
  [disabled setFrameOrigin:NSMakePoint(20, 70)];
  [disabled setEnabled:NO];
  platform::finishWindow(window_);
  show();
  DesktopLooks desktop;
  for (const bool dark : {false, true, false}) {
    desktop.use(dark);
    run(0.1);
    const theme::Palette& set = dark ? theme::kDark : theme::kLight;
    EXPECT_EQ(pixels([window_ contentView]).front(), set.window);
    EXPECT_GT(count(pixels(plain), set.text), 20) << dark;
    EXPECT_GT(count(pixels(secondary), set.textSecondary), 20) << dark;
    EXPECT_GT(count(pixels(primary), set.accent), 1500) << dark;
    EXPECT_GT(count(pixels(other), set.surface), 1500) << dark;
    for (NSView* view : {plain, secondary}) {
      EXPECT_GE(shownContrast(pixels(view)), kReadable) << dark << toBytes([view description]);
    }
    // Without the edges of a button, and the window around them.
    const auto inside = [](NSButton* button) { return pixels(button, NSInsetRect([button bounds], 8, 4)); };
    for (NSButton* button : {primary, other}) {
      EXPECT_GE(shownContrast(inside(button)), kReadable) << dark << toBytes([button description]);
    }
    EXPECT_GE(shownContrast(inside(disabled)), kReadable - 0.5) << "thin strokes are mixed with their ground";
  }
}

TEST_F(Theme, ATextThatIsFixedToTheLightAppearanceStaysLight) {
  NSScrollView* scroll = add<NSScrollView>([NSScrollView class], NSMakeRect(20, 20, 300, 200));
  [scroll setHasVerticalScroller:YES];
  NSTextView* text = [[[NSTextView alloc] initWithFrame:NSMakeRect(0, 0, 300, 600)] autorelease];
  [scroll setDocumentView:text];
  platform::finishWindow(window_);
  NSDictionary* bold = @{NSFontAttributeName : [NSFont boldSystemFontOfSize:24]};
  [[text textStorage] setAttributedString:[[[NSAttributedString alloc] initWithString:@"HIII"
                                                                           attributes:bold] autorelease]];
  show();
  DesktopLooks desktop;
  desktop.use(true);
  run(0.1);
  EXPECT_GT(count(pixels(text), theme::kDark.surface), 10000);
  [text setAppearance:[NSAppearance appearanceNamed:NSAppearanceNameAqua]];
  EXPECT_EQ(count(pixels(scroll), theme::kDark.surface), 0);
  EXPECT_GT(count(pixels(scroll), theme::kLight.surface), 10000);
  EXPECT_GT(count(pixels(text), theme::kLight.text), 20);
  EXPECT_EQ(count(pixels([window_ contentView]), theme::kLight.window), 0) << "the window around it is dark";
  [text setAppearance:nil];
  EXPECT_GT(count(pixels(text), theme::kDark.surface), 10000);
}

TEST_F(Theme, FollowsTheDesktopWhileAWindowIsOpen) {
  addButton(@"\r");
  show();
  SettingsPortal settings(desktop_->busAddress(), 1);
  const auto looksDark = [&] {
    run(0.05);
    return pixels([window_ contentView]).front() == theme::kDark.window;
  };
  ASSERT_FALSE(looksDark());
  settings.choose(1);
  EXPECT_TRUE(eventually(looksDark));
  EXPECT_TRUE(platform::services().desktopAppearance->isDark());
  settings.choose(2);
  EXPECT_TRUE(eventually([&] { return !looksDark(); }));
  EXPECT_FALSE(platform::services().desktopAppearance->isDark());
}

TEST_F(Theme, TellsTheViewsThatHaveRegisteredOfTheDesktopsChange) {
  KRThemeListener* view = add<KRThemeListener>([KRThemeListener class], NSMakeRect(0, 0, 10, 10));
  NSDistributedNotificationCenter* center = [NSDistributedNotificationCenter defaultCenter];
  [center addObserver:view selector:@selector(themeChanged:) name:kThemeChanged object:nil];
  SettingsPortal settings(desktop_->busAddress(), 2);
  settings.choose(1);
  EXPECT_TRUE(eventually([&] {
    run(0.05);
    return view->changes > 0;
  }));
  [center removeObserver:view];
  settings.choose(2);
  EXPECT_TRUE(eventually([&] {
    run(0.05);
    return !platform::services().desktopAppearance->isDark();
  }));
}

TEST_F(Theme, FollowsWhoeverTellsOfAChange) {
  show();
  DesktopLooks desktop;
  desktop.appearance.dark = true;
  [[NSDistributedNotificationCenter defaultCenter] postNotificationName:kThemeChanged
                                                                 object:nil
                                                               userInfo:nil
                                                     deliverImmediately:YES];
  EXPECT_TRUE(eventually([&] {
    run(0.05);
    return pixels([window_ contentView]).front() == theme::kDark.window;
  }));
}

}  // namespace
}  // namespace kr::testing
