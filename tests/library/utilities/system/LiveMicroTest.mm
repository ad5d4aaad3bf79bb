// The helper application on a real desktop.
#import "library/utilities/KRUtilities.h"

#include <unistd.h>

#import "platform/cocoa/Bridging.h"
#import "tests/library/utilities/system/LiveDesktop.h"

namespace kr::testing {
namespace {

const std::string kMicro = KR_MICRO_APPLICATION;

NSString* pathOfMicro(id, SEL, NSString* name, NSString* type) {
  return [name isEqual:@"Micro"] && [type isEqual:@"app"] ? toNSString(kMicro) : nil;
}

class LiveMicro : public LiveDesktop {
 protected:
  // One that starts too slowly on a busy machine ends at once, and the next one may do.
  template <class Attempt>
  static bool inOneOfSomeAttempts(Attempt attempt) {
    constexpr int kAttempts = 10;
    for (int i = 0; i < kAttempts; ++i) {
      if (attempt()) return true;
    }
    return false;
  }

  Child runningInFront() {
    // Where leaks are looked for, those of the toolkit would be the helper's status.
    const ScopedVariable options("ASAN_OPTIONS", "detect_leaks=0");
    Child micro;
    EXPECT_TRUE(inOneOfSomeAttempts([&] {
      micro = Child({kMicro + "/Micro"});
      return eventually([&] { return view.active() == "Micro" || micro.wait(0.0); }) &&
             view.active() == "Micro";
    }));
    return micro;
  }

  // Whether the helper has come to the front.
  bool handsBack(BOOL staysBehind) {
    const std::size_t before = linesWith("Micro").size();
    [KRUtilities launchMicro:staysBehind];
    const auto lines = linesWith("Micro");
    EXPECT_EQ(lines.size(), before + 1);
    EXPECT_TRUE(lines.back().starts_with("wait count (Micro) = ")) << lines.back();
    return lines.back() != "wait count (Micro) = 500";
  }

  ReplacedMethod resource =
      ReplacedMethod::ofInstances([NSBundle class], @selector(pathForResource:ofType:), pathOfMicro);
};

TEST_F(LiveMicro, ComesToTheFrontAndEndsWhenAnotherApplicationDoes) {
  const auto editor = open("Editor.app", "E");
  Child micro = runningInFront();
  activate("E");
  EXPECT_EQ(micro.wait(1.5), 0);
  EXPECT_EQ(view.active(), "E");
}

TEST_F(LiveMicro, EndsByItselfAndLeavesTheFrontToWhoWasThereBefore) {
  const auto editor = open("Editor.app", "E");
  Child micro = runningInFront();
  EXPECT_EQ(micro.wait(10.0), 0);
  EXPECT_TRUE(eventually([&] { return view.active() == "E"; })) << view.active();
}

TEST_F(LiveMicro, HandsTheKeyboardBackToTheApplicationInFront) {
  const auto editor = open("Editor.app", "E");
  EXPECT_TRUE(inOneOfSomeAttempts([&] { return handsBack(NO); }));
  EXPECT_EQ(view.active(), "E");
  EXPECT_TRUE(eventually([&] { return view.stacking() == "E"; })) << view.stacking();
  EXPECT_EQ(view.active(), "E");
}

TEST_F(LiveMicro, MayKeepTheKeyboardForItsShortLife) {
  const auto editor = open("Editor.app", "E");
  EXPECT_TRUE(inOneOfSomeAttempts([&] { return handsBack(YES); }));
  EXPECT_EQ(view.active(), "Micro");
  EXPECT_TRUE(eventually([&] { return view.active() == "E"; })) << view.active();
}

TEST_F(LiveMicro, IsNotStartedInFullScreenMode) {
  const auto editor = open("Editor.app", "E");
  EXPECT_FALSE([KRUtilities fullScreenMode]);
  view.fillScreen("E", true);
  ASSERT_TRUE(eventuallyInRunLoop([] { return [KRUtilities fullScreenMode] != NO; }));
  [KRUtilities launchMicro:NO];
  EXPECT_EQ(linesWith("Micro").size(), 0U);
  EXPECT_FALSE(eventually([&] { return view.active() != "E"; }, 1.0));
}

TEST(MicroBundle, LiesAmongTheResourcesOfTheInstaller) {
  @autoreleasepool {
    NSBundle* installer = [NSBundle bundleWithPath:toNSString(std::string(KR_INSTALLER_BUNDLE))];
    NSString* path = [installer pathForResource:@"Micro" ofType:@"app"];
    ASSERT_NE(path, nil);
    EXPECT_EQ(::access(toBytes([path stringByAppendingString:@"/Contents/MacOS/Micro"]).c_str(), X_OK), 0);
  }
}

}  // namespace
}  // namespace kr::testing
