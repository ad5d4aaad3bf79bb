// Every page in every language: the user's words, and room for all of them.
#include <algorithm>
#include <cmath>
#include <tuple>

#import "platform/cocoa/Bridging.h"
#import "platform/gnustep/AlertPanel.h"
#import "platform/gnustep/LabelText.h"
#import "platform/gnustep/Theme.h"
#import "platform/gnustep/UserLanguages.h"
#include "platform/posix/Files.h"
#import "tests/window/WindowTest.h"

namespace kr::testing {
namespace {

// The least that is free on both sides of a button's title, inside what is drawn of the button.
constexpr CGFloat kTitleMargin = 8;
constexpr const char* kHint = "If you wish to read the documentation first, click the \"?\" button.";
constexpr const char* kLongName = "Velmora Notes Professional";

// The folders of strings, by the bundle that this test is.
Lines languages() {
  Lines found;
  for (const std::string& name : files::entries(KR_STRINGS_FOLDER).value_or(Lines{})) {
    if (name.ends_with(".lproj")) found.push_back(name.substr(0, name.size() - 6));
  }
  std::sort(found.begin(), found.end());
  return found;
}

NSDictionary* table(const std::string& language) {
  const std::string path = std::string(KR_STRINGS_FOLDER "/") + language + ".lproj/Localizable.strings";
  return [toNSString(files::contents(path, 1UL << 20)) propertyListFromStringsFileFormat];
}

class InLanguage : public WindowTest {
 protected:
  void speak(const std::string& language, double scale = 1) {
    languageVariable_.emplace("LANGUAGE", language);
    table_ = [table(language) retain];
    [[NSUserDefaults standardUserDefaults]
        registerDefaults:@{@"GSScaleFactor" : [NSString stringWithFormat:@"%g", scale]}];
  }
  ~InLanguage() override { [table_ release]; }

  // A text of the table, with values for its placeholders where there are some.
  std::string word(const std::string& key, const std::string& value = {}, const std::string& second = {},
                   const std::string& third = {}) {
    std::string text = toBytes([table_ objectForKey:toNSString(key)]);
    for (const auto& [placeholder, filling] : {std::pair<std::string, std::string>{"%@", value},
                                               {"%1$@", value},
                                               {"%2$@", second},
                                               {"%3$@", third}}) {
      for (std::size_t at = text.find(placeholder); at != std::string::npos; at = text.find(placeholder)) {
        text.replace(at, placeholder.size(), filling);
      }
    }
    return text;
  }

  Lines reasonsOfFailures() {
    const std::string hint =
        word("Try installing %1$@ manually by copying it to the Applications folder.", kLongName);
    return {word("%1$@ cannot be running during the installation.\rQuit %1$@, then click "
                 "\"Install\" again.",
                 kLongName),
            word("Could not delete existing copy.") + "\r" + hint, word("Installation failed.") + "\r" + hint,
            word("Authorized copying failed.") + "\r" + hint};
  }

  static NSDictionary* attributes(NSFont* font) { return @{NSFontAttributeName : font}; }

  static void expectFits(NSTextField* field) {
    const NSRect room = NSInsetRect([field bounds], theme::kLabelInset, 0);
    const NSSize size = theme::textSize([field stringValue], attributes([field font]), NSWidth(room));
    EXPECT_LE(size.height, NSHeight(room) + 0.5) << toBytes([field stringValue]);
    EXPECT_LE(size.width, NSWidth(room) + 0.5) << toBytes([field stringValue]);
  }

  static void expectFits(NSButton* button) {
    const CGFloat width =
        [theme::drawable([button title]) sizeWithAttributes:attributes([button font])].width;
    EXPECT_LE(width, NSWidth([button frame]) - 2 * (theme::kButtonMargin + kTitleMargin))
        << toBytes([button title]);
  }

  // The panel of an alert: its parts lie inside, none on another, and have room for their texts.
  static void expectFits(const platform::Alert& alert) {
    KRAlertPanel* panel = [[[KRAlertPanel alloc] initWithAlert:alert] autorelease];
    const NSRect whole = [[panel contentView] bounds];
    int texts = 0;
    for (NSView* part in [[panel contentView] subviews]) {
      EXPECT_TRUE(NSContainsRect(whole, [part frame])) << toBytes(NSStringFromRect([part frame]));
      for (NSView* other in [[panel contentView] subviews]) {
        EXPECT_FALSE(other != part && NSIntersectsRect([part frame], [other frame]));
      }
      if ([part isKindOfClass:[NSTextField class]]) {
        expectFits(static_cast<NSTextField*>(part));
        ++texts;
      } else if ([part isKindOfClass:[NSButton class]]) {
        expectFits(static_cast<NSButton*>(part));
      }
    }
    EXPECT_EQ(texts, 2);
  }

  // What is seen has room for its text, and what is drawn of it ends before that room does.
  void expectPageFits() {
    for (NSTextField* field : {controller_->nameField, controller_->introField, controller_->pathField,
                               controller_->explanationField}) {
      if ([field isHiddenOrHasHiddenAncestor] || [field window] == nil) continue;
      // A path is as long as the disk has it; its middle is left out.
      if (field != controller_->pathField) expectFits(field);
      expectNoInkAtTheEnd(field);
    }
    for (NSButton* button : {controller_->installButton, controller_->cancelButton}) {
      if (![button isHidden]) expectFits(button);
    }
  }

  void expectNoInkAtTheEnd(NSTextField* field) {
    [[controller_ window] display];
    [field lockFocus];
    NSBitmapImageRep* image = [[[NSBitmapImageRep alloc] initWithFocusedViewRect:[field bounds]] autorelease];
    [field unlockFocus];
    const NSInteger width = [image pixelsWide];
    const NSInteger height = [image pixelsHigh];
    ASSERT_GT(width, 100);
    const auto pixel = [&](NSInteger x, NSInteger y) {
      NSUInteger values[5] = {};
      [image getPixel:values atX:x y:y];
      return std::make_tuple(values[0], values[1], values[2]);
    };
    const auto ground = pixel(0, 0);
    int ink = 0;
    for (NSInteger y = 0; y < height; ++y) {
      for (NSInteger x = 0; x < width; ++x) {
        if (pixel(x, y) == ground) continue;
        ++ink;
        // Lines begin right at the edge.
        const NSInteger end = platform::interfaceIsRightToLeft() ? 0 : width - 1;
        if (x == end || y == height - 1) {
          ADD_FAILURE() << "cut at " << x << "," << y << " of " << width << "x" << height << ": "
                        << toBytes([field stringValue]);
          return;
        }
      }
    }
    EXPECT_GT(ink, 50) << "nothing is drawn of " << toBytes([field stringValue]);
  }

  void loadPages(const Lines& more = {}) {
    Lines arguments{"-sourcePath",        product(),
                    "-productName",       kLongName,
                    "-readMePath",        scratch_.file("readme.txt", "words"),
                    "-documentationPath", scratch_.file("Manual.txt")};
    arguments.insert(arguments.end(), more.begin(), more.end());
    load(arguments);
  }

 private:
  std::optional<ScopedVariable> languageVariable_;
  NSDictionary* table_ = nil;
};

class EveryPage : public InLanguage, public ::testing::WithParamInterface<std::string> {
 protected:
  EveryPage() { speak(GetParam()); }
};

TEST_P(EveryPage, IsInTheUsersWordsAndHasRoomForThem) {
  loadPages();
  EXPECT_EQ(platform::interfaceLanguage(), GetParam());
  EXPECT_EQ(toBytes([[controller_ window] title]), word("Install %@", kLongName));
  EXPECT_EQ(title(controller_->installButton), word("Continue"));
  EXPECT_EQ(title(controller_->cancelButton), word("Cancel"));
  expectPageFits();

  press(controller_->installButton);
  ASSERT_EQ(page(), 1);
  EXPECT_EQ(title(controller_->installButton), word("Install"));
  EXPECT_EQ(title(controller_->cancelButton), word("Go Back"));
  EXPECT_EQ(text(controller_->introField), word("This will install %@ on your computer.", kLongName));
  EXPECT_EQ(text(controller_->explanationField),
            word(kHint) + " " +
                word("%@ will be copied to this location. A copy that is already there will be moved to the "
                     "Trash, and copies that are running will be asked to quit first.",
                     kLongName));
  expectPageFits();

  [controller_ installationFinished:nil];
  EXPECT_EQ(text(controller_->introField), word("%@ was successfully installed.", kLongName));
  EXPECT_EQ(title(controller_->installButton), word("OK"));
  expectPageFits();

  for (NSString* error in
       @[ @"missing source path", @"missing program name", @"missing product signature" ]) {
    [controller_ showSetupError:error];
    EXPECT_EQ(text(controller_->introField), word(toBytes(error)));
    expectPageFits();
  }
}

TEST_P(EveryPage, HasRoomForEveryReasonOfAFailure) {
  loadPages();
  for (const std::string& reason : reasonsOfFailures()) {
    EXPECT_GT(reason.size(), 20U);
    [controller_ installationFinished:toNSString(reason)];
    EXPECT_EQ(text(controller_->messageField), reason);
    expectFits(controller_->messageField);
  }
}

TEST_P(EveryPage, OfASystemThatIsTooOldIsAnAlertInTheUsersWords) {
  systemVersion_.parts = {{platform::VersionPart::major, 10}, {platform::VersionPart::minor, 12}};
  loadPages({"-minSystemVersion", "10.13.6", "-version", "12.4.1"});
  ASSERT_EQ(alerts_.shown.size(), 1U);
  const platform::Alert& alert = alerts_.shown.front().alert;
  EXPECT_EQ(alert.buttons, (Lines{word("Quit"), word("Visit Archive")}));
  EXPECT_EQ(alert.informative,
            word("To check if an older version of %@ is available for your computer, please visit our "
                 "software archive.",
                 kLongName));
  EXPECT_EQ(alert.message, word("%1$@ %2$@ cannot be installed on this computer because it requires Mac OS X "
                                "%3$@ or newer.",
                                kLongName, "12.4.1", "10.13.6"));
  expectFits(alert);
}

TEST_P(EveryPage, HasItsMenusInTheUsersWords) {
  loadPages();
  Lines titles;
  const std::function<void(NSMenu*)> collect = [&](NSMenu* menu) {
    for (NSMenuItem* item in [menu itemArray]) {
      if (![item isSeparatorItem]) titles.push_back(toBytes([item title]));
      if ([item hasSubmenu]) collect([item submenu]);
    }
  };
  collect([NSApp mainMenu]);
  for (const char* key : {"About Velmora Installer", "Quit Velmora Installer", "File", "Close", "Edit",
                          "Copy", "Select All", "Window", "Minimize"}) {
    EXPECT_NE(std::find(titles.begin(), titles.end(), word(key)), titles.end()) << key;
  }
}

INSTANTIATE_TEST_SUITE_P(Languages, EveryPage, ::testing::ValuesIn(languages()),
                         [](const ::testing::TestParamInfo<std::string>& language) {
                           std::string name = language.param;
                           std::erase(name, '-');
                           return name;
                         });

class Scaled : public InLanguage, public ::testing::WithParamInterface<std::tuple<std::string, double>> {};

TEST_P(Scaled, CutsNoText) {
  const auto& [language, scale] = GetParam();
  speak(language, scale);
  loadPages();
  EXPECT_EQ([[controller_ window] userSpaceScaleFactor], scale);
  expectPageFits();
  press(controller_->installButton);
  expectPageFits();
  for (const std::string& reason : reasonsOfFailures()) {
    [controller_ installationFinished:toNSString(reason)];
    expectFits(controller_->messageField);
  }
  [controller_ installationFinished:nil];
  expectPageFits();
}

TEST_P(Scaled, CutsNoTextOfTheAlert) {
  const auto& [language, scale] = GetParam();
  speak(language, scale);
  systemVersion_.parts = {{platform::VersionPart::major, 10}, {platform::VersionPart::minor, 12}};
  loadPages({"-minSystemVersion", "10.13.6", "-version", "12.4.1"});
  ASSERT_EQ(alerts_.shown.size(), 1U);
  expectFits(alerts_.shown.front().alert);
}

INSTANTIATE_TEST_SUITE_P(Displays, Scaled,
                         ::testing::Combine(::testing::ValuesIn(languages()), ::testing::Values(1.5, 2.0)),
                         [](const auto& info) {
                           std::string name = std::get<0>(info.param);
                           std::erase(name, '-');
                           return name + (std::get<1>(info.param) < 2 ? "_1_5" : "_2");
                         });

class RightToLeft : public InLanguage {};

TEST_F(RightToLeft, TheWindowIsTurnedRound) {
  speak("ar");
  loadPages();
  press(controller_->installButton);
  EXPECT_EQ(visibleParts(),
            (Lines{"name", "icon", "intro", "path", "explanation", "install", "cancel", "help"}));
  EXPECT_EQ([controller_->introField alignment], NSTextAlignmentRight);
}

TEST_F(RightToLeft, OtherLanguagesAreNot) {
  speak("de");
  loadPages();
  press(controller_->installButton);
  EXPECT_EQ(visibleParts(),
            (Lines{"icon", "name", "intro", "path", "explanation", "help", "cancel", "install"}));
}

}  // namespace
}  // namespace kr::testing
