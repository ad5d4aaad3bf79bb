#import "platform/cocoa/PropertyLists.h"

#include <gtest/gtest.h>

#import "platform/cocoa/Bridging.h"
#include "tests/support/ScratchFolder.h"

namespace kr {
namespace {

constexpr std::string_view kXML =
    R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>)"
    R"(<key>CFBundleSignature</key><string>VmNt</string><key>LSUIElement</key><true/></dict></plist>)";
constexpr std::string_view kPlainText = R"({ NSExecutable = Notes; CFBundleSignature = GnSt; })";

class PropertyLists : public ::testing::Test {
 protected:
  void SetUp() override { pool_ = [[NSAutoreleasePool alloc] init]; }
  void TearDown() override { [pool_ release]; }

  std::string value(NSDictionary* dictionary, NSString* key) {
    return toBytes([dictionary objectForKey:key]);
  }

  kr::testing::ScratchFolder scratch_;

 private:
  NSAutoreleasePool* pool_ = nil;
};

TEST_F(PropertyLists, XMLAndPlainTextAreRead) {
  EXPECT_EQ(value(propertyListDictionary(kXML), @"CFBundleSignature"), "VmNt");
  EXPECT_EQ(value(propertyListDictionary(kPlainText), @"NSExecutable"), "Notes");
}

TEST_F(PropertyLists, BinaryListsAreRead) {
  NSData* data = [NSPropertyListSerialization dataWithPropertyList:@{@"key" : @"value"}
                                                            format:NSPropertyListBinaryFormat_v1_0
                                                           options:0
                                                             error:nullptr];
  const std::string_view bytes(static_cast<const char*>([data bytes]), [data length]);
  EXPECT_EQ(value(propertyListDictionary(bytes), @"key"), "value");
}

TEST_F(PropertyLists, WhatIsNoDictionaryGivesNone) {
  for (const std::string_view bytes : {std::string_view(""), std::string_view("<plist><array/></plist>"),
                                       std::string_view("<plist><dict>"), std::string_view("\0\xFF\xFE", 3),
                                       std::string_view("bplist00\x01\x02"), std::string_view("(a, b)")}) {
    EXPECT_EQ(propertyListDictionary(bytes), nil) << bytes;
  }
}

TEST_F(PropertyLists, EveryBundleLayoutHasItsInformation) {
  for (const char* file :
       {"Contents/Info.plist", "Resources/Info-gnustep.plist", "Resources/Info.plist", "Info.plist"}) {
    const kr::testing::ScratchFolder bundle;
    bundle.file(file, kXML);
    EXPECT_EQ(value(bundleInfoDictionary(bundle.path()), @"CFBundleSignature"), "VmNt") << file;
  }
}

TEST_F(PropertyLists, TheFirstFileWinsAndTheOthersFillInWhatItLacks) {
  scratch_.file("Contents/Info.plist", kXML);
  scratch_.file("Resources/Info-gnustep.plist", kPlainText);
  NSDictionary* information = bundleInfoDictionary(scratch_.path());
  EXPECT_EQ(value(information, @"CFBundleSignature"), "VmNt");
  EXPECT_EQ(value(information, @"NSExecutable"), "Notes");
}

TEST_F(PropertyLists, AMissingOrMalformedInformationFileGivesNone) {
  EXPECT_EQ(bundleInfoDictionary(scratch_.path()), nil);
  scratch_.file("Contents/Info.plist", "<plist><dict><key>a</key>");
  EXPECT_EQ(bundleInfoDictionary(scratch_.path()), nil);
}

TEST_F(PropertyLists, ResourcesAreFoundInEitherLayout) {
  scratch_.file("Contents/Resources/icon.icns");
  scratch_.file("Resources/picture");
  EXPECT_EQ(bundleResourcePath(scratch_.path(), "icon", "icns"), scratch_ / "Contents/Resources/icon.icns");
  EXPECT_EQ(bundleResourcePath(scratch_.path(), "picture", ""), scratch_ / "Resources/picture");
  EXPECT_EQ(bundleResourcePath(scratch_.path(), "picture", "png"), "");
}

TEST_F(PropertyLists, TextsOfAnyBytesSurviveTheWayThroughCocoa) {
  const std::string bytes = "P\xFFr\xC3\xA9 \xF0\x9F\x98\x80.app";
  EXPECT_EQ(toBytes(toNSString(std::string_view(bytes))), bytes);
  EXPECT_EQ(toByteStrings(toNSArray({bytes, ""})), (std::vector<std::string>{bytes, ""}));
  EXPECT_EQ(toNSString(std::optional<std::string>()), nil);
  EXPECT_EQ(toOptionalBytes(nil), std::nullopt);
  EXPECT_EQ(toBytes(nil), "");
}

}  // namespace
}  // namespace kr
