// The user's choice of light or dark as other programs write it: the user defaults on the disk, here in a
// folder of the test's own.
#include "platform/DesktopAppearance.h"

#import <Foundation/Foundation.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "platform/Program.h"
#include "platform/SystemServices.h"
#include "tests/support/Child.h"
#include "tests/support/Eventually.h"
#include "tests/support/ScratchFolder.h"

namespace kr::platform {
namespace {

using kr::testing::eventually;

const std::string kStyle = "AppleInterfaceStyle";

constexpr const char* kFolder = "KR_TEST_DEFAULTS";

class DesktopAppearanceOnTheDisk : public ::testing::Test {
 protected:
  // GNUstep reads where the user defaults are while the program loads, so the program begins once more.
  static void SetUpTestSuite() {
    if (::getenv(kFolder) != nullptr) return;
    static const kr::testing::ScratchFolder folder;
    const std::string configuration =
        folder.file("GNUstep.conf", "GNUSTEP_USER_DEFAULTS_DIR=" + folder.path() + "\n");
    ::setenv("GNUSTEP_CONFIG_FILE", configuration.c_str(), 1);
    ::setenv(kFolder, folder.path().c_str(), 1);
    std::vector<std::string> words = platform::systemProgram().arguments();
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    ::execv("/proc/self/exe", arguments.data());
    FAIL() << "the program could not be started again";
  }

  static void TearDownTestSuite() { std::filesystem::remove_all(::getenv(kFolder)); }

  DesktopAppearanceOnTheDisk() : pool_([[NSAutoreleasePool alloc] init]) {}
  ~DesktopAppearanceOnTheDisk() override { [pool_ release]; }

  static void run(const std::vector<std::string>& words) {
    kr::testing::Child child(words);
    EXPECT_TRUE(child.wait(20));
  }

  // As the user does in a terminal. GNUstep tells changes of the disk apart by whole seconds, and does not
  // notice when nothing at all is left.
  static void write(const std::string& key, const std::string& value) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1100));
    run({"defaults", "write", "NSGlobalDomain", key, value});
  }
  static void remove(const std::string& key) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1100));
    run({"defaults", "delete", "NSGlobalDomain", key});
  }

 private:
  NSAutoreleasePool* pool_;
};

TEST_F(DesktopAppearanceOnTheDisk, IsFollowedWhileTheProgramRuns) {
  DesktopAppearance& appearance = systemDesktopAppearance();
  EXPECT_FALSE(appearance.isDark());
  write("AnotherKey", "kept");
  write(kStyle, "Dark");
  EXPECT_TRUE(eventually([&] { return appearance.isDark(); }));
  write(kStyle, "Light");
  EXPECT_TRUE(eventually([&] { return !appearance.isDark(); }));
  write(kStyle, "Dark");
  EXPECT_TRUE(eventually([&] { return appearance.isDark(); }));
  remove(kStyle);
  EXPECT_TRUE(eventually([&] { return !appearance.isDark(); }));
}

}  // namespace
}  // namespace kr::platform
