#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <vector>

#import "platform/cocoa/Bridging.h"
#import "platform/cocoa/PrepareApplication.h"
#import "platform/gnustep/Appearance.h"
#import "platform/gnustep/ThemeColors.h"
#import "platform/gnustep/TruncatingLabel.h"
#include "tests/support/Desktop.h"

namespace kr::testing {
namespace {

constexpr CGFloat kSide = 400;

// A window on an X server of the program's own. The toolkit connects to one server in its life.
class Theme : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    desktop_ = std::make_unique<Desktop>(DesktopParts{.display = true, .windowManager = true});
    @autoreleasepool {
      platform::prepareApplication();
      [NSApp finishLaunching];
    }
  }

  static void TearDownTestSuite() { desktop_.reset(); }

  Theme() : pool_([[NSAutoreleasePool alloc] init]) {
    window_ = [[NSWindow alloc] initWithContentRect:NSMakeRect(50, 50, kSide, kSide)
                                          styleMask:NSTitledWindowMask
                                            backing:NSBackingStoreBuffered
                                              defer:NO];
    [window_ setReleasedWhenClosed:NO];
  }

  ~Theme() override {
    [window_ close];
    [window_ release];
    [pool_ release];
  }

  template <typename View>
  View* add(Class type, NSRect frame) {
    View* view = [[[type alloc] initWithFrame:frame] autorelease];
    [[window_ contentView] addSubview:view];
    return view;
  }

  NSButton* addButton(NSString* key) {
    NSButton* button = add<NSButton>([NSButton class], NSMakeRect(20, 20, 112, 32));
    [button setBezelStyle:NSRoundedBezelStyle];
    [button setTitle:@"Install"];
    [button setKeyEquivalent:key];
    return button;
  }

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

  static void run(double seconds) {
    NSDate* end = [NSDate dateWithTimeIntervalSinceNow:seconds];
    while ([end timeIntervalSinceNow] > 0) {
      NSEvent* event = [NSApp nextEventMatchingMask:NSAnyEventMask
                                          untilDate:[NSDate dateWithTimeIntervalSinceNow:0.02]
                                             inMode:NSDefaultRunLoopMode
                                            dequeue:YES];
      if (event != nil) [NSApp sendEvent:event];
    }
  }

  // The colours that the view shows, as 0xRRGGBB, row by row.
  static std::vector<int> pixels(NSView* view) {
    [[view window] display];
    [view lockFocus];
    NSBitmapImageRep* image =
        [[[NSBitmapImageRep alloc] initWithFocusedViewRect:[view visibleRect]] autorelease];
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

  NSWindow* window_ = nil;

 private:
  static std::unique_ptr<Desktop> desktop_;
  NSAutoreleasePool* pool_;
};

std::unique_ptr<Desktop> Theme::desktop_;

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
  EXPECT_GT(count(shown, theme::kAccent), 1500);
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
  EXPECT_EQ(count(shown, theme::kAccent), 0);
  EXPECT_GT(count(shown, theme::kSurface), 1500);
}

TEST_F(Theme, ADefaultButtonThatCannotBePressedLooksLikeIt) {
  NSButton* button = addButton(@"\r");
  [button setEnabled:NO];
  show();
  EXPECT_EQ(count(pixels(button), theme::kAccent), 0);
}

TEST_F(Theme, TheBarMovesWhileItRunsAndIsInvisibleWhenItDoesNot) {
  NSProgressIndicator* bar =
      add<NSProgressIndicator>([NSProgressIndicator class], NSMakeRect(20, 20, 300, 20));
  [bar setIndeterminate:YES];
  platform::finishWindow(window_);
  show();
  EXPECT_EQ(count(pixels([window_ contentView]), theme::kTrack), 0);
  [bar startAnimation:nil];
  std::set<std::vector<int>> looks;
  for (int look = 0; look < 5; ++look) {
    run(0.3);
    looks.insert(pixels([window_ contentView]));
  }
  EXPECT_GE(looks.size(), 4U);
  EXPECT_GT(count(*looks.begin(), theme::kTrack), 500);
  EXPECT_GT(count(*looks.begin(), theme::kAccent), 200);
  [bar stopAnimation:nil];
  run(0.1);
  EXPECT_EQ(count(pixels([window_ contentView]), theme::kTrack), 0);
  EXPECT_EQ(count(pixels([window_ contentView]), theme::kAccent), 0);
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

TEST_F(Theme, AViewKeepsAnAppearanceAndLetsItGo) {
  NSAppearance* appearance = [[NSAppearance alloc] init];
  const NSUInteger count = [appearance retainCount];
  {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    NSView* view = [[NSView alloc] initWithFrame:NSZeroRect];
    EXPECT_EQ([view appearance], nil);
    [view setAppearance:appearance];
    EXPECT_EQ([view appearance], appearance);
    [view setAppearance:nil];
    EXPECT_EQ([view appearance], nil);
    [view setAppearance:appearance];
    [view release];
    [pool release];
  }
  EXPECT_EQ([appearance retainCount], count);
  [appearance release];
}

}  // namespace
}  // namespace kr::testing
