#import "platform/macos/FileText.h"

#include <gtest/gtest.h>

namespace kr::macos {
namespace {

const std::string kBroken = "/tmp/a\xFF.txt";

TEST(FileText, HandsTextInUTF8OnAsItIs) {
  @autoreleasepool {
    for (const char* path : {"", "/", "/tmp/Größe 1", "/tmp/😀", "/tmp/a\uFFFDb"}) {
      EXPECT_EQ(toBytes(cocoaText(path)), path);
      EXPECT_EQ(toBytes(exactPath(path)), path);
    }
  }
}

TEST(FileText, ShowsTheReplacementForBytesThatAreNoUTF8) {
  @autoreleasepool {
    EXPECT_EQ(toUTF16(cocoaText(kBroken)), u"/tmp/a\uFFFD.txt");
  }
}

// The replacement could be the name of another item.
TEST(FileText, IsNoExactPathOfBytesThatAreNoUTF8) {
  @autoreleasepool {
    EXPECT_EQ(exactPath(kBroken), nil);
    EXPECT_NE(exactPath(""), nil);
  }
}

}  // namespace
}  // namespace kr::macos
