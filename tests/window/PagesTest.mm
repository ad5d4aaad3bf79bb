// What the pages are made of and how they are laid out: what the pictures of them show.
#include <algorithm>

#import "platform/cocoa/Bridging.h"
#import "tests/window/WindowTest.h"

namespace kr::testing {
namespace {

class Pages : public WindowTest {
 protected:
  void open(const Lines& more = {}) {
    Lines arguments{"-sourcePath", product(), "-documentationPath", scratch_.file("Manual.txt")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    load(arguments);
  }

  static NSRect inWindow(NSView* view) { return [view convertRect:[view bounds] toView:nil]; }

  // The parts stand in the window, with the margins that all pages have, and none on another.
  void expectTidy(const std::vector<NSView*>& parts) {
    const NSRect whole = NSInsetRect([[[controller_ window] contentView] bounds], 20, 16);
    for (NSView* part : parts) {
      EXPECT_TRUE(NSContainsRect(whole, inWindow(part))) << toBytes([part description]);
      for (NSView* other : parts) {
        EXPECT_FALSE(other != part && NSIntersectsRect(inWindow(part), inWindow(other)))
            << toBytes([part description]) << toBytes([other description]);
      }
    }
  }

  void expectOneLeftEdge(const std::vector<NSView*>& parts) {
    for (NSView* part : parts) EXPECT_EQ(NSMinX(inWindow(part)), NSMinX(inWindow(parts.front())));
  }
};

TEST_F(Pages, TheReadMePage) {
  open({"-readMePath", scratch_.file("readme.txt", "words")});
  EXPECT_EQ(visibleParts(), (Lines{"icon", "name", "read-me", "help", "cancel", "install"}));
  NSView* text = [controller_->readMeTextView enclosingScrollView];
  expectTidy({controller_->iconField, controller_->nameField, text, controller_->helpButton,
              controller_->cancelButton, controller_->installButton});
  EXPECT_GT(NSHeight(inWindow(text)), 200);
  expectOneLeftEdge({controller_->iconField, text});
}

TEST_F(Pages, TheReadyPage) {
  open();
  EXPECT_EQ(visibleParts(),
            (Lines{"icon", "name", "intro", "path", "explanation", "help", "cancel", "install"}));
  expectTidy({controller_->iconField, controller_->nameField, controller_->introField, controller_->pathField,
              controller_->explanationField, controller_->helpButton, controller_->cancelButton,
              controller_->installButton});
  expectOneLeftEdge({controller_->nameField, controller_->introField, controller_->pathField,
                     controller_->explanationField});
}

TEST_F(Pages, TheInstallingPage) {
  open();
  [controller_->installButton setEnabled:NO];
  [controller_->cancelButton setEnabled:NO];
  [controller_ animateProgress:@"YES"];
  EXPECT_EQ(visibleParts(),
            (Lines{"icon", "name", "intro", "path", "explanation", "progress", "help", "cancel", "install"}));
  expectTidy({controller_->explanationField, controller_->progressIndicator, controller_->installButton});
  [controller_ animateProgress:nil];
}

// The same as before it: the reason is set, and its field stays hidden.
TEST_F(Pages, ThePageAfterAFailure) {
  open();
  [controller_->installButton setEnabled:NO];
  [controller_->cancelButton setEnabled:NO];
  [controller_ animateProgress:@"YES"];
  [controller_ installationFinished:@"Installation failed."];
  EXPECT_EQ(visibleParts(),
            (Lines{"icon", "name", "intro", "path", "explanation", "help", "cancel", "install"}));
  EXPECT_EQ(text(controller_->messageField), "Installation failed.");
  EXPECT_EQ(title(controller_->installButton), "Install");
  EXPECT_TRUE([controller_->installButton isEnabled]);
  EXPECT_TRUE([controller_->cancelButton isEnabled]);
  expectTidy({controller_->iconField, controller_->nameField, controller_->introField, controller_->pathField,
              controller_->explanationField, controller_->helpButton, controller_->cancelButton,
              controller_->installButton});
  // Where somebody shows the reason, it has its place beside all but the explanation.
  expectTidy({controller_->introField, controller_->pathField, controller_->messageField,
              controller_->helpButton, controller_->cancelButton, controller_->installButton});
}

TEST_F(Pages, TheDonePage) {
  open();
  [controller_ installationFinished:nil];
  EXPECT_EQ(visibleParts(), (Lines{"icon", "name", "checkmark", "intro", "install"}));
  expectTidy({controller_->iconField, controller_->nameField, controller_->checkmarkField,
              controller_->introField, controller_->installButton});
}

TEST_F(Pages, ThePageOfAnError) {
  load({"-sourcePath", scratch_.folder("Plain.app")});
  EXPECT_EQ(visibleParts(), (Lines{"icon", "name", "intro", "install"}));
}

// The read-me is light whatever the desktop is.
TEST_F(Pages, TheReadMeStaysLightInADarkWindow) {
  desktopAppearance_.dark = true;
  open({"-readMePath", scratch_.file("readme.txt", "words")});
  // How bright most of a view is, from 0 to 1.
  const auto brightness = [&](NSView* view) {
    [[controller_ window] display];
    [view lockFocus];
    NSBitmapImageRep* image =
        [[[NSBitmapImageRep alloc] initWithFocusedViewRect:[view visibleRect]] autorelease];
    [view unlockFocus];
    std::vector<double> values;
    for (NSInteger y = 0; y < [image pixelsHigh]; ++y) {
      for (NSInteger x = 0; x < [image pixelsWide]; ++x) {
        NSUInteger pixel[5] = {};
        [image getPixel:pixel atX:x y:y];
        values.push_back(static_cast<double>(pixel[0] + pixel[1] + pixel[2]) / (3 * 255));
      }
    }
    std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size()) / 2, values.end());
    return values.at(values.size() / 2);
  };
  EXPECT_GT(brightness(controller_->readMeTextView), 0.95);
  press(controller_->installButton);
  EXPECT_LT(brightness([[controller_ window] contentView]), 0.3);
}

}  // namespace
}  // namespace kr::testing
