#import "platform/gnustep/AlertPanel.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#import "platform/cocoa/Bridging.h"
#import "platform/cocoa/PrepareApplication.h"
#include "tests/support/Desktop.h"

namespace kr::testing {
namespace {

std::string repeated(const std::string& word, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += word;
  return text;
}

template <class View>
std::vector<View*> views(NSWindow* window, Class type) {
  std::vector<View*> found;
  for (NSView* view in [[window contentView] subviews]) {
    if ([view isKindOfClass:type]) found.push_back(static_cast<View*>(view));
  }
  return found;
}

class AlertPanel : public ::testing::Test {
 protected:
  AlertPanel() : pool_([[NSAutoreleasePool alloc] init]) {
    platform::prepareApplication();
    [NSApp finishLaunching];
  }
  ~AlertPanel() override { [pool_ release]; }

  KRAlertPanel* panel(const platform::Alert& alert) {
    KRAlertPanel* made = [[[KRAlertPanel alloc] initWithAlert:alert] autorelease];
    texts_ = views<NSTextField>(made, [NSTextField class]);
    buttons_ = views<NSButton>(made, [NSButton class]);
    return made;
  }

  static platform::Alert alert(const std::string& message, const std::string& informative) {
    return {.message = message, .informative = informative, .buttons = {"Quit", "Visit Archive"}, .icon = ""};
  }

  // Every part lies inside the panel, and none on another. The margins of buttons may touch.
  static void expectTidy(KRAlertPanel* panel) {
    const NSRect whole = [[panel contentView] bounds];
    NSArray* parts = [[panel contentView] subviews];
    for (NSView* part in parts) {
      EXPECT_TRUE(NSContainsRect(whole, [part frame])) << toBytes(NSStringFromRect([part frame]));
      for (NSView* other in parts) {
        if (other != part)
          EXPECT_FALSE(NSIntersectsRect([part frame], [other frame])) << toBytes([part description]);
      }
    }
  }

  // Height of a text in whole lines of the first one.
  static double lines(NSTextField* text) {
    return NSHeight([text frame]) / [@"X" sizeWithAttributes:@{NSFontAttributeName : [text font]}].height;
  }

  Desktop desktop_{{.display = true, .windowManager = true}};
  NSAutoreleasePool* pool_;
  std::vector<NSTextField*> texts_;
  std::vector<NSButton*> buttons_;
};

TEST_F(AlertPanel, ShowsItsTexts) {
  KRAlertPanel* made = panel(alert("A message", "More about it"));
  ASSERT_EQ(texts_.size(), 2U);
  EXPECT_EQ(toBytes([texts_[0] stringValue]), "A message");
  EXPECT_EQ(toBytes([texts_[1] stringValue]), "More about it");
  EXPECT_GT(NSMinY([texts_[0] frame]), NSMaxY([texts_[1] frame]) - 1) << "the message stands above";
  EXPECT_NEAR(lines(texts_[0]), 1, 0.3);
  EXPECT_FALSE([texts_[0] isEditable]);
  expectTidy(made);
}

TEST_F(AlertPanel, BreaksTextsIntoLinesAndGrowsWithThem) {
  const CGFloat low = NSHeight([panel(alert("A message", "More about it")) frame]);
  KRAlertPanel* made = panel(alert(repeated("several words ", 12), repeated("some more words ", 24)));
  EXPECT_GT(lines(texts_[0]), 3.5);
  EXPECT_GT(lines(texts_[1]), 5.5);
  EXPECT_GT(NSHeight([made frame]), low + 80);
  expectTidy(made);
}

TEST_F(AlertPanel, BreaksAWordThatIsTooLongForALine) {
  KRAlertPanel* made = panel(alert(repeated("m", 200), ""));
  EXPECT_GT(lines(texts_[0]), 4.5);
  expectTidy(made);
}

TEST_F(AlertPanel, StaysOnTheScreenWithTheLongestOfTexts) {
  const std::string text = repeated("many words ", 2000);
  KRAlertPanel* made = panel(alert(text, text));
  EXPECT_LE(NSHeight([made frame]), NSHeight([[NSScreen mainScreen] visibleFrame]));
  EXPECT_GT(lines(texts_[0]), 10);
  EXPECT_GT(lines(texts_[1]), 10);
  expectTidy(made);
}

TEST_F(AlertPanel, HasItsDefaultButtonAtTheRight) {
  KRAlertPanel* made = panel(alert("A message", ""));
  ASSERT_EQ(buttons_.size(), 2U);
  EXPECT_EQ(toBytes([buttons_[0] title]), "Quit");
  EXPECT_EQ(toBytes([buttons_[1] title]), "Visit Archive");
  EXPECT_GE(NSMinX([buttons_[0] frame]), NSMaxX([buttons_[1] frame]));
  EXPECT_EQ(NSMinY([buttons_[0] frame]), NSMinY([buttons_[1] frame]));
  EXPECT_EQ(toBytes([buttons_[0] keyEquivalent]), "\r");
  EXPECT_EQ(toBytes([buttons_[1] keyEquivalent]), "");
  EXPECT_EQ([buttons_[0] tag], 1000);
  EXPECT_EQ([buttons_[1] tag], 1001);
  EXPECT_EQ([made initialFirstResponder], buttons_[0]);
  EXPECT_EQ([buttons_[0] nextKeyView], buttons_[1]);
  EXPECT_EQ([buttons_[1] nextKeyView], buttons_[0]);
}

TEST_F(AlertPanel, MakesAButtonAsWideAsItsTitle) {
  KRAlertPanel* made = panel(
      {.message = "A message", .informative = "", .buttons = {"A button with a long title"}, .icon = ""});
  const CGFloat width =
      [[buttons_[0] title] sizeWithAttributes:@{NSFontAttributeName : [buttons_[0] font]}].width;
  EXPECT_GT(NSWidth([buttons_[0] frame]), width + 20);
  EXPECT_EQ([buttons_[0] nextKeyView], buttons_[0]);
  expectTidy(made);
}

TEST_F(AlertPanel, ShowsTheNamedImage) {
  NSImage* image = [[[NSImage alloc] initWithSize:NSMakeSize(32, 32)] autorelease];
  [image setName:@"TestIcon"];
  platform::Alert named = alert("A message", "");
  named.icon = "TestIcon";
  EXPECT_EQ([views<NSImageView>(panel(named), [NSImageView class]).at(0) image], image);
  named.icon = "No such image";
  NSImage* applications = [[[NSImage alloc] initWithSize:NSMakeSize(16, 16)] autorelease];
  NSImage* before = [[[NSApp applicationIconImage] retain] autorelease];
  [NSApp setApplicationIconImage:applications];
  EXPECT_EQ([views<NSImageView>(panel(named), [NSImageView class]).at(0) image],
            [NSApp applicationIconImage]);
  EXPECT_EQ([[NSApp applicationIconImage] size].width, 16);
  [NSApp setApplicationIconImage:before];
}

}  // namespace
}  // namespace kr::testing
