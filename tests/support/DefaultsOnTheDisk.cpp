#include "tests/support/DefaultsOnTheDisk.h"

#include <stdlib.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>
#include <vector>

#include "platform/Program.h"
#include "platform/SystemServices.h"
#include "tests/support/Child.h"
#include "tests/support/ScratchFolder.h"

namespace kr::testing {
namespace {

constexpr const char* kFolder = "KR_TEST_DEFAULTS";

void makeFolder(const std::string& path) {
  std::filesystem::create_directories(path);
  std::ofstream(path + "/GNUstep.conf") << "GNUSTEP_USER_DEFAULTS_DIR=" << path << "\n";
}

void run(const std::vector<std::string>& words) {
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  Child child(words);
  EXPECT_TRUE(child.wait(20));
}

}  // namespace

void DefaultsOnTheDisk::SetUpTestSuite() {
  if (const char* path = ::getenv(kFolder)) {
    makeFolder(path);
    return;
  }
  static const ScratchFolder folder;
  makeFolder(folder.path());
  ::setenv("GNUSTEP_CONFIG_FILE", (folder / "GNUstep.conf").c_str(), 1);
  ::setenv(kFolder, folder.path().c_str(), 1);
  std::vector<std::string> words = platform::systemProgram().arguments();
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  ::execv("/proc/self/exe", arguments.data());
  FAIL() << "the program could not be started again";
}

void DefaultsOnTheDisk::TearDownTestSuite() {
  std::filesystem::remove_all(::getenv(kFolder));
}

void DefaultsOnTheDisk::write(const std::string& domain, const std::string& key, const std::string& value) {
  run({"defaults", "write", domain, key, value});
}

void DefaultsOnTheDisk::remove(const std::string& domain, const std::string& key) {
  run({"defaults", "delete", domain, key});
}

}  // namespace kr::testing
