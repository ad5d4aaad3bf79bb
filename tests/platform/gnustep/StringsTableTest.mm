#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <array>
#include <string>

#import "platform/cocoa/Bridging.h"
#include "platform/posix/Files.h"

namespace kr {
namespace {

constexpr std::array kTexts{
    "Continue",
    "Install",
    "Cancel",
    "Go Back",
    "OK",
    "If you wish to read the documentation first, click the \"?\" button.",
    "Quit",
    "Visit Archive",
    "%1$@ %2$@ cannot be installed on this computer because it requires Mac OS X %3$@ or newer.",
    "To check if an older version of %@ is available for your computer, please visit our software archive.",
    "%@ was successfully installed.",
    "%1$@ cannot be running during the installation.\rQuit %1$@, then click \"Install\" again.",
    "Could not delete existing copy.",
    "Installation failed.",
    "Authorized copying failed.",
    "Try installing %1$@ manually by copying it to the Applications folder.",
    "missing source path",
    "missing program name",
    "missing product signature",
};

class StringsTable : public ::testing::Test {
 protected:
  StringsTable() : pool_([[NSAutoreleasePool alloc] init]) {}
  ~StringsTable() override { [pool_ release]; }

  static NSBundle* bundle() { return [NSBundle bundleWithPath:toNSString(std::string(KR_INSTALLER_BUNDLE))]; }

  static NSDictionary* table() {
    NSString* path = [bundle() pathForResource:@"Localizable"
                                        ofType:@"strings"
                                   inDirectory:nil
                               forLocalization:@"en"];
    NSString* text = toNSString(files::contents(toBytes(path), 1UL << 20));
    return [text propertyListFromStringsFileFormat];
  }

 private:
  NSAutoreleasePool* pool_;
};

TEST_F(StringsTable, LoadsInTheBundleAndHoldsEveryTextThatTheApplicationShows) {
  NSString* missing = @"(missing)";
  for (const char* text : kTexts) {
    NSString* found = [bundle() localizedStringForKey:toNSString(std::string(text)) value:missing table:nil];
    EXPECT_EQ(toBytes(found), text);
  }
}

TEST_F(StringsTable, HasTheEnglishTextItselfAsKey) {
  ASSERT_GE([table() count], kTexts.size());
  for (NSString* key in table()) EXPECT_EQ(toBytes([table() objectForKey:key]), toBytes(key));
}

TEST_F(StringsTable, HoldsTheFormatsOfTheUserInterfaceFileAsTheyStandThere) {
  NSString* path = [bundle() pathForResource:@"MainMenu" ofType:@"xib"];
  const std::string interface = files::contents(toBytes(path), 1UL << 20).value_or("");
  int formats = 0;
  for (NSString* key in table()) {
    if (interface.find(" title=\"" + toBytes(key) + "\"") != std::string::npos &&
        toBytes(key).find("%@") != std::string::npos)
      ++formats;
  }
  EXPECT_EQ(formats, 3) << "the title, the introduction and the explanation";
}

}  // namespace
}  // namespace kr
