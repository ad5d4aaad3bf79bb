// What the utilities say of a program that lies in a bundle.
#import "library/utilities/KRUtilities.h"
#import "platform/cocoa/Bridging.h"
#import "tests/window/WindowTest.h"

namespace kr::testing {
namespace {

TEST(Bundle, NamesItsProgramAndItsVersion) {
  @autoreleasepool {
    EXPECT_EQ(toBytes([KRUtilities applicationName]), "window_tests");
    EXPECT_EQ(toBytes([KRUtilities versionString]), "1.0");
    EXPECT_EQ(toBytes([KRUtilities plainVersionString]), "1.0");
  }
}

TEST(Bundle, HasAnIconFile) {
  @autoreleasepool {
    EXPECT_EQ([KRUtilities appType], 1U);
  }
}

}  // namespace
}  // namespace kr::testing
